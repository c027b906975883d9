#include "platform/linux/atspi/text_offsets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

// "a", U+1F600, "b": three code points, four UTF-16 units.
constexpr const char* astral =
    "a\xF0\x9F\x98\x80"
    "b";
// The same as Gecko sends it.
constexpr const char* paddedAstral =
    "a\xF0\x9F\x98\x80\xEF\xBB\xBF"
    "b";

struct RangeCase {
    std::string bytes;
    std::int64_t characterCount;
    AstralPadding padding;
    std::int64_t start;
    std::int64_t end;
    std::optional<TextRange> expected;
    Text expectedPart;
};

TEST(ElementText, ConvertsRangesToUtf16Units) {
    const std::vector<RangeCase> cases{
        {"hello", 5, AstralPadding::none, 1, 3, TextRange{1, 2}, u"el"},
        {"hello", 5, AstralPadding::none, 0, 5, TextRange{0, 5}, u"hello"},
        {"hello", 5, AstralPadding::none, 5, 5, TextRange{5, 0}, u""},
        {"", 0, AstralPadding::none, 0, 0, TextRange{0, 0}, u""},
        // Code points.
        {astral, 3, AstralPadding::none, 1, 2, TextRange{1, 2}, u"\U0001F600"},
        {astral, 3, AstralPadding::none, 2, 3, TextRange{3, 1}, u"b"},
        {astral, 3, AstralPadding::none, 3, 3, TextRange{4, 0}, u""},
        // UTF-16 units.
        {astral, 4, AstralPadding::none, 1, 3, TextRange{1, 2}, u"\U0001F600"},
        {astral, 4, AstralPadding::none, 3, 4, TextRange{3, 1}, u"b"},
        {astral, 4, AstralPadding::none, 2, 4, TextRange{2, 2},
         u"\xDE00"
         u"b"},
        // UTF-16 units with padding.
        {paddedAstral, 4, AstralPadding::byteOrderMarks, 1, 3, TextRange{1, 2}, u"\U0001F600"},
        {paddedAstral, 4, AstralPadding::byteOrderMarks, 3, 4, TextRange{3, 1}, u"b"},
        // The same bytes from another toolkit.
        {paddedAstral, 4, AstralPadding::none, 1, 3, TextRange{1, 3}, u"\U0001F600\uFEFF"},
        // A backward selection.
        {"hello", 5, AstralPadding::none, 4, 1, TextRange{1, 3}, u"ell"},
        {astral, 3, AstralPadding::none, 2, 1, TextRange{1, 2}, u"\U0001F600"},
        // An embedded object is one character.
        {"x\xEF\xBF\xBCy", 3, AstralPadding::none, 1, 2, TextRange{1, 1}, u"\uFFFC"},
    };
    for (const RangeCase& each : cases) {
        const auto text = ElementText::read(each.bytes, each.characterCount, each.padding);
        ASSERT_TRUE(text) << each.bytes;
        const auto range = text->range(each.start, each.end);
        EXPECT_EQ(range, each.expected) << each.bytes << " " << each.start << ".." << each.end;
        if (range) {
            EXPECT_EQ(text->part(*range), each.expectedPart) << each.bytes << " " << each.start << ".." << each.end;
            const std::pair own(text->ownPosition(range->location), text->ownPosition(range->location + range->length));
            EXPECT_EQ(own, std::minmax({each.start, each.end})) << each.bytes << " " << each.start << ".." << each.end;
        }
    }
}

TEST(ElementText, RejectsRangesThatItCannotConvert) {
    const std::vector<RangeCase> cases{
        {"hello", 5, AstralPadding::none, -1, 3, {}, {}},
        {"hello", 5, AstralPadding::none, 0, 6, {}, {}},
        {"hello", 5, AstralPadding::none, 7, 2, {}, {}},
        {"hello", 5, AstralPadding::none, INT64_MIN, INT64_MAX, {}, {}},
        // A length that fits neither unit.
        {"hello", 4, AstralPadding::none, 0, 1, {}, {}},
        {"hello", -1, AstralPadding::none, 0, 1, {}, {}},
        {astral, 5, AstralPadding::none, 0, 1, {}, {}},
        // Inside the text in one unit, outside it in the element's unit.
        {astral, 3, AstralPadding::none, 0, 4, {}, {}},
        {astral, 4, AstralPadding::none, 0, 5, {}, {}},
        {paddedAstral, 4, AstralPadding::byteOrderMarks, 0, 5, {}, {}},
        // A padded text is never counted in code points.
        {paddedAstral, 3, AstralPadding::byteOrderMarks, 0, 1, {}, {}},
    };
    for (const RangeCase& each : cases) {
        const auto text = ElementText::read(each.bytes, each.characterCount, each.padding);
        ASSERT_TRUE(text) << each.bytes;
        EXPECT_EQ(text->range(each.start, each.end), std::nullopt)
            << each.bytes << " of " << each.characterCount << ": " << each.start << ".." << each.end;
    }
}

TEST(ElementText, IsAbsentIfTheBytesAreIllFormed) {
    for (const std::string bytes : {"\xFF", "a\xC3", "\xED\xA0\x80", "\xF0\x9F\x98", "\xC0\x80"}) {
        EXPECT_FALSE(ElementText::read(bytes, 1, AstralPadding::none)) << testing::PrintToString(bytes);
        EXPECT_FALSE(ElementText::read(bytes, 1, AstralPadding::byteOrderMarks)) << testing::PrintToString(bytes);
    }
}

TEST(ElementText, RemovesOneMarkPerCharacter) {
    const auto text =
        ElementText::read("\xF0\x9F\x98\x80\xEF\xBB\xBF\xEF\xBB\xBFz\xEF\xBB\xBF", 5, AstralPadding::byteOrderMarks);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->text(), u"\U0001F600\uFEFFz\uFEFF");
}

TEST(LooksPadded, IsTrueOnlyIfEachAstralCharacterHasAMark) {
    struct Case {
        std::string bytes;
        bool expected;
    };
    const std::vector<Case> cases{
        {"", false},
        {"plain", false},
        {"\xEF\xBB\xBFplain", false},
        {astral, false},
        {paddedAstral, true},
        {std::string(paddedAstral) + paddedAstral, true},
        {std::string(paddedAstral) + astral, false},
        {"\xF0\x9F\x98\x80", false},
        {"\xF0\x9F\x98", false},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(looksPadded(each.bytes), each.expected) << testing::PrintToString(each.bytes);
    }
}

}  // namespace
}  // namespace lomaris
