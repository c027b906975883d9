#include "text/unicode_encoding.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace lomaris {
namespace {

using namespace std::string_view_literals;
using enum UnicodeEncoding;

TEST(UnicodeEncoding, IsDetectedFromItsMarkOrZeroBytes) {
    struct Example {
        std::string_view bytes;
        UnicodeEncoding encoding;
        std::size_t markLength;
    };
    const std::vector<Example> examples = {
        {"", utf8, 0},
        {"{}", utf8, 0},
        {"{\"a\"", utf8, 0},
        {"\0{\"a"sv, utf8, 0},
        {"\0\0\0\0"sv, utf8, 0},
        {"\xFF{\"a", utf8, 0},
        {"\xEF\xBB", utf8, 0},
        {"\xEF\xBB\xBF", utf8, 3},
        {"\xEF\xBB\xBF{\0\"\0"sv, utf8, 3},
        {"\xFE\xFF\0{"sv, utf16BigEndian, 2},
        {"\xFF\xFE{\0"sv, utf16LittleEndian, 2},
        {"\xFF\xFE\0\0{\0\0\0"sv, utf16LittleEndian, 2},
        {"\0\0\xFE\xFF\0\0\0{"sv, utf32BigEndian, 4},
        {"\0{\0}"sv, utf16BigEndian, 0},
        {"{\0}\0"sv, utf16LittleEndian, 0},
        {"\0\0\0{"sv, utf32BigEndian, 0},
        {"{\0\0\0"sv, utf32LittleEndian, 0},
    };
    for (const auto& [bytes, encoding, markLength] : examples) {
        const auto detected = detectUnicodeEncoding(bytes);
        EXPECT_EQ(detected.encoding, encoding) << testing::PrintToString(bytes);
        EXPECT_EQ(detected.markLength, markLength) << testing::PrintToString(bytes);
    }
}

TEST(UnicodeEncoding, IsDetectedWithoutReadingPastTheEnd) {
    for (const std::string_view bytes : {"\0\0\0{"sv, "{\0\0\0"sv, "\0{\0{"sv, "{\0{\0"sv}) {
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            EXPECT_EQ(detectUnicodeEncoding(bytes.substr(0, length)).encoding, utf8) << length;
        }
    }
}

TEST(UnicodeEncoding, ConvertsWellFormedBytesToUtf8) {
    constexpr auto utf8Text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"sv;
    EXPECT_EQ(utf8FromEncoded(utf8Text, utf8), utf8Text);
    EXPECT_EQ(utf8FromEncoded("\0a\0\xE9\x20\xAC\xD8\x3D\xDE\x00"sv, utf16BigEndian), utf8Text);
    EXPECT_EQ(utf8FromEncoded("a\0\xE9\0\xAC\x20\x3D\xD8\x00\xDE"sv, utf16LittleEndian), utf8Text);
    EXPECT_EQ(utf8FromEncoded("\0\0\0a\0\0\0\xE9\0\0\x20\xAC\0\x01\xF6\x00"sv, utf32BigEndian), utf8Text);
    EXPECT_EQ(utf8FromEncoded("a\0\0\0\xE9\0\0\0\xAC\x20\0\0\x00\xF6\x01\0"sv, utf32LittleEndian), utf8Text);
    EXPECT_EQ(utf8FromEncoded("\0\x10\xFF\xFF"sv, utf32BigEndian), "\xF4\x8F\xBF\xBF");
    EXPECT_EQ(utf8FromEncoded("\0\0"sv, utf16BigEndian), "\0"sv);
    EXPECT_EQ(utf8FromEncoded("", utf32LittleEndian), "");
}

TEST(UnicodeEncoding, RefusesIllFormedBytes) {
    struct Example {
        std::string_view bytes;
        UnicodeEncoding encoding;
    };
    const std::vector<Example> examples = {
        {"\xFF", utf8},
        {"\0a\0"sv, utf16BigEndian},
        {"a"sv, utf16LittleEndian},
        {"\xD8\x3D\0a"sv, utf16BigEndian},
        {"\xD8\x3D"sv, utf16BigEndian},
        {"\xDE\0\xD8\x3D"sv, utf16BigEndian},
        {"\x3D\xD8"sv, utf16LittleEndian},
        {"\0\0\0a\0\0"sv, utf32BigEndian},
        {"\0\0\xD8\0"sv, utf32BigEndian},
        {"\0\x11\0\0"sv, utf32BigEndian},
        {"\xFF\xFF\xFF\xFF"sv, utf32BigEndian},
        {"\0\xD8\0\0"sv, utf32LittleEndian},
    };
    for (const auto& [bytes, encoding] : examples) {
        EXPECT_EQ(utf8FromEncoded(bytes, encoding), std::nullopt) << testing::PrintToString(bytes);
    }
}

}  // namespace
}  // namespace lomaris
