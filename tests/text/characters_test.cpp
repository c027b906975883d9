#include "text/characters.h"

#include "tests/support/vectors.h"
#include "tests/text/random_text.h"
#include "tests/text/reference.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lomaris::test {

namespace {

std::int64_t referenceCount(TextView text) { return static_cast<std::int64_t>(reference::characters(text).size()); }

/// A control character never joins its neighbor, so a text after it has as many characters as the text alone. Carriage
/// return is not used, because a line feed joins it.
Text asciiThatEndsInAControl(std::size_t units) { return units == 0 ? Text() : Text(units - 1, u'a') + u'\x01'; }

Text asciiThatBeginsWithAControl(std::size_t units) { return units == 0 ? Text() : u'\x01' + Text(units - 1, u'z'); }

/// True for ideographs and the planes of private use and unassigned code points, which behave alike within each range.
bool isInUniformRange(char32_t codePoint) {
    const bool isIdeograph = codePoint >= 0x3400 && codePoint < 0xA000;
    const bool isInHighPlane = codePoint >= 0x20000 && (codePoint < 0xE0000 || codePoint > 0xE0FFF);
    return isIdeograph || isInHighPlane;
}

}  // namespace

TEST(CharacterCount, CountsAMarkOrALineEndAnywhereInALongRun) {
    for (std::size_t place = 1; place < 300; ++place) {
        Text marked(300, u'a');
        marked[place] = u'\u0301';
        EXPECT_EQ(characterCount(marked), 299) << place;
        Text lines(300, u'a');
        lines[place - 1] = u'\r';
        lines[place] = u'\n';
        EXPECT_EQ(characterCount(lines), 299) << place;
    }
}

TEST(CharacterCount, IgnoresContextBeforeALongRun) {
    const Text run(200, u'a');
    // A joiner joins two pictographs only if the first directly precedes it; a flag is two adjacent indicators.
    EXPECT_EQ(characterCount(u"\U0001F600" + run + u"\u200D\U0001F600"), 202);
    EXPECT_EQ(characterCount(u"\U0001F1E9" + run + u"\U0001F1E9\U0001F1EA"), 202);
    EXPECT_EQ(characterCount(u"\u0915\u094D" + run + u"\u0915"), 202);
}

TEST(CharacterCount, MatchesEveryRecordedCase) {
    for (const auto& [line, value] : readVectors("character-count")) {
        const Text text = textOf(value.at("text"));
        const auto expected = value.at("expected").at("characters").get<std::int64_t>();
        EXPECT_EQ(characterCount(text), expected) << "line " << line << ": " << unitsOf(text);
    }
}

TEST(CharacterCount, ReferenceMatchesEveryRecordedCase) {
    for (const auto& [line, value] : readVectors("character-count")) {
        const Text text = textOf(value.at("text"));
        const auto expected = value.at("expected").at("characters").get<std::int64_t>();
        EXPECT_EQ(referenceCount(text), expected) << "line " << line << ": " << unitsOf(text);
    }
}

TEST(CharacterCount, MatchesEveryRecordedCaseBetweenRunsOfAscii) {
    for (const auto& [line, value] : readVectors("character-count")) {
        const Text text = textOf(value.at("text"));
        const auto alone = value.at("expected").at("characters").get<std::int64_t>();
        for (std::size_t before = 0; before <= 20; ++before) {
            for (std::size_t after = 0; after <= 20; ++after) {
                const Text glued = asciiThatEndsInAControl(before) + text + asciiThatBeginsWithAControl(after);
                ASSERT_EQ(characterCount(glued), alone + static_cast<std::int64_t>(before + after))
                    << "line " << line << ": " << unitsOf(glued);
            }
        }
    }
}

TEST(CharacterCount, AgreesWithTheReferenceIfLettersTouchRecordedTexts) {
    for (const auto& [line, value] : readVectors("character-count")) {
        const Text text = textOf(value.at("text"));
        for (std::size_t units = 0; units <= 20; ++units) {
            for (const char16_t edge : {u'a', u'\r', u'\n'}) {
                const Text glued = Text(units, u'a') + edge + text + edge + Text(units, u'z');
                ASSERT_EQ(characterCount(glued), referenceCount(glued)) << "line " << line << ": " << unitsOf(glued);
            }
        }
    }
}

TEST(CharacterCount, CountsCarriageReturnLineFeedAsOneAtAnyPosition) {
    for (std::size_t before = 0; before <= 70; ++before) {
        for (const std::size_t after : {0U, 1U, 31U, 32U, 33U, 64U}) {
            const Text text = Text(before, u'a') + u"\r\n" + Text(after, u'z');
            ASSERT_EQ(characterCount(text), static_cast<std::int64_t>(before + 1 + after)) << unitsOf(text);
            const Text reversed = Text(before, u'a') + u"\n\r" + Text(after, u'z');
            ASSERT_EQ(characterCount(reversed), static_cast<std::int64_t>(before + 2 + after)) << unitsOf(reversed);
        }
    }
    Text lineEnds;
    for (std::int64_t pairs = 0; pairs <= 200; ++pairs) {
        ASSERT_EQ(characterCount(lineEnds), pairs);
        ASSERT_EQ(characterCount(u"\n" + lineEnds + u"\r"), pairs + 2);
        lineEnds += u"\r\n";
    }
}

TEST(CharacterCount, CountsExtendedGraphemeClusters) {
    struct Case {
        TextView text;
        std::int64_t expected;
    };
    const std::vector<Case> cases{
        {u"", 0},
        {u"abc", 3},
        {u"\r\n", 1},
        {u"e\u0301", 1},
        {u"\u0301", 1},
        {u"\n\u0301", 2},
        {u"\U0001F1E9\U0001F1EA", 1},
        {u"\U0001F1E9\U0001F1EA\U0001F1EB", 2},
        {u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", 2},
        {u"\U0001F1E9a\U0001F1EA", 3},
        {u"\U0001F1E9\u0301\U0001F1EA", 2},
        {u"\U0001F44D\U0001F3FD", 1},
        {u"\U0001F468\u200D\U0001F469\u200D\U0001F467", 1},
        {u"\u2764\uFE0F\u200D\U0001F525", 1},
        {u"\U0001F468\u200D\u200D\U0001F469", 2},
        {u"a\u200D\U0001F469", 2},
        {u"1\uFE0F\u20E3", 1},
        {u"\u1100\u1161\u11A8", 1},
        {u"\uAC00\u11A8", 1},
        {u"\uAC01\u1161", 2},
        {u"\u0600a", 1},
        {u"\u0600\n", 2},
        {u"\u0915\u094D\u0937\u093F", 1},
        {u"\u0915\u094D\u094D\u0937", 1},
        {u"\u0915\u093C\u094D\u200D\u0937", 1},
        {u"\u0915\u094D\u200C\u0937", 2},
        {u"\u0915\u0937", 2},
        {u"\u0915\u094Da\u0937", 3},
        {u"\u094D\u0937", 2},
        {u"\u0B95\u0BCD\u0BB7", 2},
        {u"\u0E01\u0E33", 1},
        {u"\U0001F9D1\u200D\U0001FAEF\u200D\U0001F9D1", 1},
        {u"\U0001F9D1\u200D\U0001FFFD", 1},
        {u"\U0001F9D1\u200D\U0001FBFF", 2},
        {u"a\u2065\u0301", 3},
        {u"a\U000E0FFF\u0301", 3},
        {u"a\U000E0100\u0301", 1},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(characterCount(text), expected) << unitsOf(text);
    }
}

TEST(CharacterCount, CountsHalvesOfSurrogatePairsAsCharacters) {
    EXPECT_EQ(characterCount(Text{0xD83D}), 1);
    EXPECT_EQ(characterCount(Text{0xDE00, 0xD83D}), 2);
    EXPECT_EQ(characterCount(Text{0xD83D, 0xD83D, 0xDE00}), 2);
    EXPECT_EQ(characterCount(Text{u'a', 0xD83D, u'b'}), 3);
    EXPECT_EQ(characterCount(Text{0xD83D, 0x301}), 1);
}

TEST(CharacterCount, AgreesWithTheReferenceOnRandomTexts) {
    RandomTexts random(42);
    for (int round = 0; round < 20000; ++round) {
        const Text text = random.next(20);
        ASSERT_EQ(characterCount(text), referenceCount(text)) << unitsOf(text);
    }
}

TEST(CharacterCount, AgreesWithTheLibraryIfItsVersionDoesNotMatter) {
    RandomTexts random(43);
    int compared = 0;
    for (int round = 0; round < 20000; ++round) {
        const Text text = random.next(12);
        if (reference::dependsOnLibraryVersion(text)) {
            continue;
        }
        ++compared;
        ASSERT_EQ(characterCount(text), reference::libraryCharacterCount(text)) << unitsOf(text);
    }
    EXPECT_GT(compared, 10000);
}

TEST(CharacterCount, AgreesWithTheReferenceOnCodePointsInContext) {
    static constexpr std::array<TextView, 6> before{u"x",      u"\u0915\u094D", u"\U0001F468\u200D",
                                                    u"\u1100", u"\uAC00",       u"\U0001F1E6"};
    static constexpr std::array<TextView, 3> after{u"x", u"\u0937", u"\u11A8"};
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (isInUniformRange(codePoint) && codePoint % 251 != 0) {
            continue;
        }
        for (std::size_t i = 0; i < before.size(); ++i) {
            Text text(before.at(i));
            append(text, codePoint);
            text += after.at(i % after.size());
            ASSERT_EQ(characterCount(text), referenceCount(text)) << unitsOf(text);
        }
    }
}

TEST(CharacterCount, CountsAVeryLongRunOfMarksAsOne) {
    EXPECT_EQ(characterCount(u'e' + Text(1'000'000, u'\u0301')), 1);
    Text consonants;
    for (int i = 0; i < 100'000; ++i) {
        consonants += u"\u0915\u094D";
    }
    EXPECT_EQ(characterCount(consonants), 1);
}

}  // namespace lomaris::test
