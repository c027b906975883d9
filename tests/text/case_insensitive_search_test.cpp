#include "text/case_insensitive_search.h"

#include "tests/support/vectors.h"

#include <gtest/gtest.h>

#include <vector>

namespace lomaris {
namespace {

TEST(ContainsIgnoringCase, MatchesEveryRecordedCase) {
    for (const test::Vector& each : test::readVectors("editor-identifier")) {
        EXPECT_EQ(containsIgnoringCase(test::textOf(each.value.at("text")), u"editor", CaseRules::common),
                  each.value.at("expected").at("contains").get<bool>())
            << "line " << each.line;
    }
}

TEST(ContainsIgnoringCase, ComparesWholeCharacters) {
    struct Case {
        Text text;
        Text word;
        bool expected;
    };
    const std::vector<Case> cases{
        {u"MainEditorView", u"EDITOR", true},
        {u"\u00C9diteur", u"e\u0301D", true},
        {u"e\u0301dit", u"e", false},
        {u"xe\u0301", u"e", false},
        {u"ee\u0301", u"e", true},
        {u"\U0001F468\u200D\U0001F469", u"\U0001F468", false},
        {u"a\xD83D", u"A", true},
        {u"aaab", u"aab", true},
        {u"e" + Text(20000, u'\u0301') + u"Editor", u"editor", true},
        {u"e" + Text(20000, u'\u0301') + u"dit", u"edit", false},
        {u"abc", u"abcd", false},
        {u"abc", u"", true},
        {u"", u"", false},
        {u"", u"a", false},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(containsIgnoringCase(each.text, each.word, CaseRules::common), each.expected)
            << testing::PrintToString(each.text) << " " << testing::PrintToString(each.word);
    }
}

TEST(ContainsIgnoringCase, DistinguishesTurkishDottedAndDotlessI) {
    struct Case {
        Text text;
        Text word;
        bool common;
        bool turkic;
    };
    const std::vector<Case> cases{
        {u"MainEditorView", u"editor", true, true},
        {u"EDITOR", u"editor", true, false},
        {u"ED\u0130TOR", u"editor", false, true},
        {u"EDI\u0307TOR", u"editor", false, true},
        {u"ed\u0131tor", u"editor", false, false},
        {u"EDITOR", u"ed\u0131tor", false, true},
        {u"ed\u0131tor", u"EDITOR", false, true},
        {u"editor", u"ED\u0130TOR", false, true},
        {u"editor", u"EDITOR", true, false},
        // The dot above counts as the dot of the letter after marks below it, but not after another mark above.
        {u"I\u0323\u0307", u"i\u0323", false, true},
        {u"I\u0301\u0307", u"\u0131\u0301\u0307", false, true},
        {u"\u0130", u"i", false, true},
        {u"\u00CE", u"\u00EE", true, false},
        {u"\u00CE", u"\u0131\u0302", false, true},
        {u"STRASSE \u00C4", u"stra\u00DFe \u00E4", true, true},
        {u"", u"editor", false, false},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(containsIgnoringCase(each.text, each.word, CaseRules::common), each.common)
            << testing::PrintToString(each.text) << " " << testing::PrintToString(each.word);
        EXPECT_EQ(containsIgnoringCase(each.text, each.word, CaseRules::turkic), each.turkic)
            << testing::PrintToString(each.text) << " " << testing::PrintToString(each.word);
    }
}

TEST(CaseRulesOf, AreTurkicForTurkishAndAzerbaijani) {
    EXPECT_EQ(caseRulesOf("tr"), CaseRules::turkic);
    EXPECT_EQ(caseRulesOf("az"), CaseRules::turkic);
    for (const char* const language : {"", "de", "lt", "tr_TR", "TR", "t"}) {
        EXPECT_EQ(caseRulesOf(language), CaseRules::common) << language;
    }
}

}  // namespace
}  // namespace lomaris
