#include "text/case_insensitive_search.h"

#include "tests/support/vectors.h"

#include <gtest/gtest.h>

#include <vector>

namespace lomaris {
namespace {

TEST(ContainsIgnoringCase, AgreesWithEveryReferenceLine) {
    for (const test::Vector& each : test::readVectors("editor-identifier")) {
        EXPECT_EQ(containsIgnoringCase(test::textOf(each.value.at("text")), u"editor"),
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
        EXPECT_EQ(containsIgnoringCase(each.text, each.word), each.expected)
            << testing::PrintToString(each.text) << " " << testing::PrintToString(each.word);
    }
}

}  // namespace
}  // namespace lomaris
