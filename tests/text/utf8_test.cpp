#include "text/utf8.h"

#include "tests/support/vectors.h"
#include "tests/text/random_text.h"
#include "tests/text/reference.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace lomaris::test {

namespace {

/// Compares every function that takes bytes with the reference.
void expectDecodesAsReference(const std::string& bytes) {
    const reference::Decoded expected = reference::decodeUtf8(bytes);
    ASSERT_EQ(isValidUtf8(bytes), expected.isValid) << hexOf(bytes);
    ASSERT_EQ(textFromUtf8(bytes), expected.text) << hexOf(bytes);
    const std::optional<Text> valid = textFromValidUtf8(bytes);
    ASSERT_EQ(valid, expected.isValid ? std::optional<Text>(expected.text) : std::nullopt) << hexOf(bytes);
}

}  // namespace

TEST(Utf8, ReadsNothingPastTheEnd) {
    const std::string_view whole = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::string_view cut = whole.substr(0, length);
        // A zero byte follows the copy; the rest of a character may follow `cut`.
        const std::string copy(cut);
        EXPECT_EQ(textFromUtf8(cut), textFromUtf8(copy)) << length;
        EXPECT_EQ(isValidUtf8(cut), isValidUtf8(copy)) << length;
    }
}

TEST(Utf8, ValidatesEveryRecordedCase) {
    for (const auto& [line, value] : readVectors("utf8-validity")) {
        const std::string bytes = bytesOf(value.at("bytes"));
        const bool expected = value.at("expected").at("valid").get<bool>();
        EXPECT_EQ(isValidUtf8(bytes), expected) << "line " << line << ": " << hexOf(bytes);
        EXPECT_EQ(textFromValidUtf8(bytes).has_value(), expected) << "line " << line << ": " << hexOf(bytes);
    }
}

TEST(Utf8, RepairsEveryRecordedCase) {
    for (const auto& [line, value] : readVectors("utf8-repair")) {
        const std::string bytes = bytesOf(value.at("bytes"));
        const std::string expected = bytesOf(value.at("expected").at("utf8"));
        EXPECT_EQ(hexOf(utf8FromText(textFromUtf8(bytes))), hexOf(expected)) << "line " << line << ": " << hexOf(bytes);
    }
}

TEST(Utf8, EncodesEveryRecordedCase) {
    for (const auto& [line, value] : readVectors("character-count")) {
        const Text text = textOf(value.at("text"));
        const std::string expected = bytesOf(value.at("expected").at("utf8"));
        EXPECT_EQ(hexOf(utf8FromText(text)), hexOf(expected)) << "line " << line << ": " << unitsOf(text);
    }
}

TEST(Utf8, RepairsEveryRecordedCaseBetweenRunsOfAscii) {
    for (const auto& [line, value] : readVectors("utf8-repair")) {
        const std::string bytes = bytesOf(value.at("bytes"));
        const std::string expected = bytesOf(value.at("expected").at("utf8"));
        for (std::size_t before = 0; before <= 20; ++before) {
            for (std::size_t after = 0; after <= 20; ++after) {
                const std::string glued = std::string(before, 'a') + bytes + std::string(after, 'z');
                const std::string gluedExpected = std::string(before, 'a') + expected + std::string(after, 'z');
                ASSERT_EQ(hexOf(utf8FromText(textFromUtf8(glued))), hexOf(gluedExpected)) << "line " << line;
                ASSERT_EQ(isValidUtf8(glued), bytes == expected) << "line " << line << ": " << hexOf(glued);
            }
        }
    }
}

TEST(Utf8, DecodesEveryPairOfBytesAsTheReference) {
    for (int first = 0; first < 0x100; ++first) {
        for (int second = 0; second < 0x100; ++second) {
            expectDecodesAsReference({static_cast<char>(first), static_cast<char>(second)});
        }
    }
}

TEST(Utf8, DecodesFourBytesAroundEveryEdgeAsTheReference) {
    static constexpr std::array<int, 14> edges{0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0,
                                               0xBF, 0xC2, 0xE0, 0xED, 0xF0, 0xF4, 0xF5};
    for (const int first : edges) {
        for (const int second : edges) {
            for (const int third : edges) {
                for (const int fourth : edges) {
                    expectDecodesAsReference({static_cast<char>(first), static_cast<char>(second),
                                              static_cast<char>(third), static_cast<char>(fourth)});
                }
            }
        }
    }
}

TEST(Utf8, DecodesRandomBytesAsTheReference) {
    RandomTexts random(20240501);
    for (int round = 0; round < 4000; ++round) {
        expectDecodesAsReference(random.nextBytes(24));
    }
}

TEST(Utf8, EncodesRandomTextsAsTheLibrary) {
    RandomTexts random(7);
    for (int round = 0; round < 4000; ++round) {
        const Text text = random.next(24);
        ASSERT_EQ(hexOf(utf8FromText(text)), hexOf(reference::utf8(text))) << unitsOf(text);
    }
}

TEST(Utf8, RoundTripsEveryCodePoint) {
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (codePoint >= 0xD800 && codePoint <= 0xDFFF) {
            continue;
        }
        Text text;
        append(text, codePoint);
        const std::string bytes = utf8FromText(text);
        ASSERT_TRUE(isValidUtf8(bytes)) << unitsOf(text);
        ASSERT_EQ(textFromUtf8(bytes), text);
    }
}

TEST(Utf8, WritesHalfASurrogatePairAsReplacementCharacter) {
    struct Case {
        Text text;
        std::string expected;
    };
    const std::array cases{
        Case{{0xD83D}, "\uFFFD"},
        Case{{0xDE00}, "\uFFFD"},
        Case{{0xDE00, 0xD83D}, "\uFFFD\uFFFD"},
        Case{{0xD83D, 0xD83D, 0xDE00}, "\uFFFD\U0001F600"},
        Case{{0xD83D, 0xDE00, 0xDE00}, "\U0001F600\uFFFD"},
        Case{{u'a', 0xD83D, u'b'}, "a\uFFFDb"},
    };
    for (const Case& example : cases) {
        EXPECT_EQ(utf8FromText(example.text), example.expected) << unitsOf(example.text);
    }
}

TEST(Utf8, KeepsSurrogatePairsOfALongTextTogether) {
    // Every unit before the pair takes three bytes, the most that a unit can take.
    for (std::size_t before = 0; before <= 5000; ++before) {
        const Text text = Text(before, u'\u20AC') + u"\U0001F600";
        ASSERT_EQ(textFromUtf8(utf8FromText(text)), text) << before;
    }
}

TEST(Utf8, KeepsByteOrderMarksAndNullCharacters) {
    const std::string bytes(
        "\xEF\xBB\xBF"
        "a\0b",
        6);
    const Text text(u"\uFEFFa\0b", 4);
    EXPECT_TRUE(isValidUtf8(bytes));
    EXPECT_EQ(textFromUtf8(bytes), text);
    EXPECT_EQ(utf8FromText(text), bytes);
}

TEST(Utf8, AppendsToExistingBytes) {
    std::string output = "x";
    appendUtf8(output, u"");
    appendUtf8(output, u"\u00E9");
    appendUtf8(output, u"yz");
    EXPECT_EQ(output, "x\u00E9yz");
}

TEST(Utf8, ConvertsEmptyStrings) {
    EXPECT_TRUE(isValidUtf8(std::string_view()));
    EXPECT_EQ(textFromUtf8(std::string_view()), Text());
    EXPECT_EQ(textFromValidUtf8(std::string_view()), Text());
    EXPECT_EQ(utf8FromText(TextView()), "");
}

}  // namespace lomaris::test
