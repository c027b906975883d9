#include "accessibility/adapter/text_context.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace lomaris {
namespace {

constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

const std::vector<TextRange> rangesOutside = {
    {11, 0},
    {8, 4},
    {0, 11},
    {-1, 2},
    {2, -1},
    {notFoundLocation, 0},
    {notFoundLocation, 1},
    {1, greatest},
    {greatest - 1, 2},
    {least, 1},
    {0, least},
    {least, least},
    {greatest, greatest},
};

TEST(TextContext, CutsTheSelectedTextByUtf16Units) {
    EXPECT_EQ(TextContext::selectedText(u"0123456789", {3, 4}), u"3456");
    EXPECT_EQ(TextContext::selectedText(u"0123456789", {0, 10}), u"0123456789");
    EXPECT_EQ(TextContext::selectedText(u"0123456789", {10, 0}), u"");
    EXPECT_EQ(TextContext::selectedText(u"0123456789", {4, 0}), u"");
    EXPECT_EQ(TextContext::selectedText(u"", {0, 0}), u"");
}

TEST(TextContext, HasNoSelectedTextForARangeOutsideTheText) {
    for (const auto& range : rangesOutside) {
        EXPECT_EQ(TextContext::selectedText(u"0123456789", range), std::nullopt)
            << range.location << ", " << range.length;
    }
}

TEST(TextContext, CutsFiveUnitsOnEachSide) {
    EXPECT_EQ(TextContext::extract(u"0123456789abcdefg", TextRange{6, 5}, {5, 5}),
              (ExtractedContext{u"12345", u"bcdef"}));
}

TEST(TextContext, ReturnsAllTextIfTheLimitIsGreater) {
    EXPECT_EQ(TextContext::extract(u"0123456789", TextRange{3, 4}, {10000, 10000}), (ExtractedContext{u"012", u"789"}));
    EXPECT_EQ(TextContext::extract(u"0123456789", TextRange{3, 4}, {greatest, greatest}),
              (ExtractedContext{u"012", u"789"}));
}

TEST(TextContext, IsEmptyBeyondTheStartAndTheEnd) {
    EXPECT_EQ(TextContext::extract(u"0123456789", TextRange{0, 4}, {5, 5}), (ExtractedContext{u"", u"45678"}));
    EXPECT_EQ(TextContext::extract(u"0123456789", TextRange{6, 4}, {5, 5}), (ExtractedContext{u"12345", u""}));
}

TEST(TextContext, HasAnEmptySideForALimitOfZero) {
    EXPECT_EQ(TextContext::extract(u"0123456789", TextRange{3, 4}, {0, 2}), (ExtractedContext{u"", u"78"}));
    EXPECT_EQ(TextContext::extract(u"0123456789", TextRange{3, 4}, {2, 0}), (ExtractedContext{u"12", u""}));
}

TEST(TextContext, IsAbsentForANegativeLimit) {
    EXPECT_EQ(TextContext::extract(u"0123456789", TextRange{3, 4}, {5, -1}), std::nullopt);
    EXPECT_EQ(TextContext::extract(u"0123456789", TextRange{3, 4}, {-1, 5}), std::nullopt);
}

TEST(TextContext, IsAbsentWithoutTextOrRange) {
    EXPECT_EQ(TextContext::extract(std::nullopt, TextRange{3, 4}, {5, 5}), std::nullopt);
    EXPECT_EQ(TextContext::extract(u"0123456789", std::nullopt, {5, 5}), std::nullopt);
}

TEST(TextContext, IsAbsentForARangeOutsideTheText) {
    for (const auto& range : rangesOutside) {
        EXPECT_EQ(TextContext::extract(u"0123456789", range, {5, 5}), std::nullopt)
            << range.location << ", " << range.length;
    }
}

TEST(TextContext, MayCutASurrogatePairInHalf) {
    EXPECT_EQ(TextContext::extract(u"a\U0001f600bc\U0001f600", TextRange{3, 1}, {1, 2}),
              (ExtractedContext{Text(1, u'\xde00'), Text({u'c', 0xD83D})}));
}

}  // namespace
}  // namespace lomaris
