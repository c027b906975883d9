#include "text/equality.h"

#include "tests/support/vectors.h"
#include "tests/text/random_text.h"
#include "tests/text/reference.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {

namespace {

/// Returns `text` with some code points decomposed, some neighbors swapped and a few code points dropped.
Text variantOf(TextView text, RandomTexts& random) {
    Text result;
    std::vector<char32_t> all = reference::codePoints(text);
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i > 0 && random.below(6) == 0) {
            std::swap(all[i - 1], all[i]);
        }
    }
    for (const char32_t codePoint : all) {
        Text one;
        append(one, codePoint);
        if (random.below(2) == 0) {
            result += reference::decodeUtf8(reference::decomposed(one)).text;
        } else if (random.below(60) != 0) {
            result += one;
        }
    }
    return result;
}

std::string messageFor(TextView a, TextView b) { return unitsOf(a) + "/ " + unitsOf(b); }

}  // namespace

TEST(CanonicalEquality, MatchesEveryRecordedCase) {
    for (const auto& [line, value] : readVectors("text-equality")) {
        const Text a = textOf(value.at("a"));
        const Text b = textOf(value.at("b"));
        const bool expected = value.at("expected").at("equal").get<bool>();
        EXPECT_EQ(canonicallyEqual(a, b), expected) << "line " << line << ": " << messageFor(a, b);
        EXPECT_EQ(canonicallyEqual(b, a), expected) << "line " << line << ": " << messageFor(b, a);
    }
}

TEST(CanonicalEquality, MatchesEveryRecordedCaseBetweenRunsOfAscii) {
    for (const auto& [line, value] : readVectors("text-equality")) {
        const Text a = textOf(value.at("a"));
        const Text b = textOf(value.at("b"));
        const bool expected = value.at("expected").at("equal").get<bool>();
        for (std::size_t before = 0; before <= 20; ++before) {
            for (std::size_t after = 0; after <= 20; ++after) {
                const Text gluedA = Text(before, u'a') + a + Text(after, u'z');
                const Text gluedB = Text(before, u'a') + b + Text(after, u'z');
                ASSERT_EQ(canonicallyEqual(gluedA, gluedB), expected) << "line " << line << ": " << messageFor(a, b);
            }
        }
    }
}

TEST(CanonicalEquality, DistinguishesEquivalentFromDifferentTexts) {
    struct Case {
        Text a;
        Text b;
        bool expected;
    };
    const std::vector<Case> cases{
        {u"", u"", true},
        {u"", u"a", false},
        {u"a", u"A", false},
        {u"a", u"ab", false},
        {u"\u00E9", u"e\u0301", true},
        {u"\u00E9", u"e", false},
        {u"e\u0301", u"e", false},
        {u"ab\u00E9cd", u"abe\u0301cd", true},
        {u"\u1E69", u"s\u0307\u0323", true},
        {u"s\u0323\u0307", u"s\u0307\u0323", true},
        {u"s\u0301\u0300", u"s\u0300\u0301", false},
        {u"a\u0323", u"a\u0323\u034F", false},
        {u"\uAC01", u"\u1100\u1161\u11A8", true},
        {u"\uAC01", u"\uAC00\u11A8", true},
        {u"\u2126", u"\u03A9", true},
        {u"\uFB01", u"fi", false},
        {u"\u0958", u"\u0915\u093C", true},
        {u"\U0001D15F", u"\U0001D158\U0001D165", true},
        {u"\r\n", u"\n", false},
        {{0xD83D}, u"\uFFFD", true},
        {{0xD83D}, {0xDE00}, true},
        {{0xD83D, 0xDE00}, u"\uFFFD\uFFFD", false},
        {Text(u"a\0b", 3), Text(u"a\0c", 3), false},
        {Text(u"a\0", 2), u"a", false},
    };
    for (const auto& [a, b, expected] : cases) {
        EXPECT_EQ(canonicallyEqual(a, b), expected) << messageFor(a, b);
        EXPECT_EQ(canonicallyEqual(b, a), expected) << messageFor(b, a);
    }
}

TEST(CanonicalEquality, HoldsBetweenEveryCodePointAndItsDecomposition) {
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        Text text = u"x";
        append(text, codePoint);
        const Text decomposition = reference::decodeUtf8(reference::decomposed(text)).text;
        ASSERT_TRUE(canonicallyEqual(text, decomposition)) << messageFor(text, decomposition);
    }
}

TEST(CanonicalEquality, AgreesWithFullNormalizationOnRandomTexts) {
    RandomTexts random(1234);
    int equal = 0;
    int different = 0;
    for (int round = 0; round < 20000; ++round) {
        const Text a = random.next(8);
        const Text b = variantOf(a, random);
        const bool expected = reference::decomposed(a) == reference::decomposed(b);
        ASSERT_EQ(canonicallyEqual(a, b), expected) << messageFor(a, b);
        ++(expected ? equal : different);
    }
    EXPECT_GT(equal, 2000);
    EXPECT_GT(different, 2000);
}

TEST(CanonicalEquality, KeepsTheOrderOfManyMarksOfOneClass) {
    Text above;
    Text exchanged;
    for (int i = 0; i < 50; ++i) {
        above += u"\u0301\u0300";
        exchanged += i == 25 ? u"\u0300\u0301" : u"\u0301\u0300";
    }
    EXPECT_TRUE(canonicallyEqual(u"e" + above + u"\u0323", u"e\u0323" + above));
    EXPECT_FALSE(canonicallyEqual(u"e" + above + u"\u0323", u"e\u0323" + exchanged));
}

TEST(CanonicalEquality, OrdersVeryLongRunsOfMarks) {
    Text a = u"e";
    Text above;
    Text below;
    for (int i = 0; i < 500'000; ++i) {
        a += u"\u0301\u0323";
        above += u'\u0301';
        below += u'\u0323';
    }
    EXPECT_TRUE(canonicallyEqual(a, u"e" + above + below));
    EXPECT_TRUE(canonicallyEqual(a, u"e" + below + above));
    EXPECT_FALSE(canonicallyEqual(a, u"e" + below + above + u"\u0301"));
}

TEST(CharacterPrefix, MatchesEveryRecordedCase) {
    for (const auto& [line, value] : readVectors("identifier-prefix")) {
        const Text text = textOf(value.at("a"));
        const Text prefix = textOf(value.at("b"));
        const bool expected = value.at("expected").at("prefix").get<bool>();
        EXPECT_EQ(hasCharacterPrefix(text, prefix), expected) << "line " << line << ": " << messageFor(text, prefix);
    }
}

TEST(CharacterPrefix, EndsAtACharacterBoundary) {
    struct Case {
        Text text;
        Text prefix;
        bool expected;
    };
    const std::vector<Case> cases{
        {u"", u"", true},
        {u"", u"a", false},
        {u"abc", u"", true},
        {u"abc", u"ab", true},
        {u"abc", u"abc", true},
        {u"abc", u"abcd", false},
        {u"abc", u"b", false},
        {u"abc", u"AB", false},
        {u"e\u0301x", u"e", false},
        {u"e\u0301x", u"\u00E9", true},
        {u"\u00E9x", u"e\u0301", true},
        {u"\u00E9x", u"e", false},
        {u"a\r\n", u"a\r", false},
        {u"a\r\n", u"a\r\n", true},
        {u"\U0001F1E9\U0001F1EA", u"\U0001F1E9", false},
        {u"\U0001F44D\U0001F3FD", u"\U0001F44D", false},
        {u"\u0915\u094D\u0937", u"\u0915", false},
        {{0xD83D, 0xDE00}, {0xD83D}, false},
        {{0xD83D, u'a'}, u"\uFFFD", true},
    };
    for (const auto& [text, prefix, expected] : cases) {
        EXPECT_EQ(hasCharacterPrefix(text, prefix), expected) << messageFor(text, prefix);
    }
}

TEST(CharacterPrefix, AgreesWithTheReferenceOnRandomTexts) {
    RandomTexts random(99);
    int yes = 0;
    for (int round = 0; round < 10000; ++round) {
        const Text text = random.next(8);
        const Text prefix = variantOf(TextView(text).substr(0, random.below(text.size() + 1)), random);
        const bool expected = reference::hasCharacterPrefix(text, prefix);
        ASSERT_EQ(hasCharacterPrefix(text, prefix), expected) << messageFor(text, prefix);
        yes += expected ? 1 : 0;
    }
    EXPECT_GT(yes, 1000);
    EXPECT_LT(yes, 9000);
}

}  // namespace lomaris::test
