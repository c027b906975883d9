#include "json/json_string.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace lomaris {
namespace {

using namespace std::string_view_literals;

TEST(JsonString, IsDecodedWithItsEscapes) {
    struct Example {
        std::string_view written;
        TextView text;
    };
    const std::vector<Example> examples = {
        {"", u""},
        {"brown fox", u"brown fox"},
        {R"(\"\\\/\b\f\n\r\t)", u"\"\\/\b\f\n\r\t"},
        {R"(a\nb)", u"a\nb"},
        {R"(\u0041\u00e9\u20AC\uFFFF)", u"A\u00E9\u20AC\uFFFF"},
        {R"(\u0000)", std::u16string_view(u"\0", 1)},
        {R"(\u001f\u007f)", u"\u001F\u007F"},
        {R"(\ud83d\ude00)", u"\U0001F600"},
        {R"(\uD83D\uDE00\uDBFF\uDFFF)", u"\U0001F600\U0010FFFF"},
        {R"(\\u0041)", u"\\u0041"},
        {"\x7F", u"\u007F"},
        {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", u"\u00E9\u20AC\U0001F600"},
        {"\xC3\xA9\\n\xF0\x9F\x98\x80", u"\u00E9\n\U0001F600"},
    };
    for (const auto& [written, text] : examples) {
        EXPECT_EQ(decodeJsonString(written), text) << written;
    }
}

TEST(JsonString, IsRefusedIfIllFormed) {
    const std::vector<std::string_view> examples = {
        "\n",
        "a\0b"sv,
        "a\x1F",
        "\\n\t",
        R"(\)",
        R"(a\)",
        R"(\x41)",
        R"(\')",
        R"(\N)",
        R"(\0)",
        "\\\n",
        R"(\u)",
        R"(\u004)",
        R"(\u004g)",
        R"(\u-041)",
        R"(\u+041)",
        R"(\u 041)",
        R"(\U0041)",
        R"(\ud83d)",
        R"(\ude00)",
        R"(\ude00\ud83d)",
        R"(\ud83d\u0041)",
        R"(\ud83d\ud83d\ude00)",
        R"(\ud83dude00)",
        R"(\ud83d\nde00)",
        R"(\ud83d\ude0)",
        "\\ud83d\xED\xB8\x80",
        "\xFF",
        "\xC3",
        "\xC0\xAF",
        "\xED\xA0\x80",
        "\xF4\x90\x80\x80",
        "\xC3\\n\xA9",
    };
    for (const auto written : examples) {
        EXPECT_EQ(decodeJsonString(written), std::nullopt) << written;
    }
}

TEST(JsonString, FindsAnEscapeOrErrorAnywhereInALongText) {
    for (std::size_t place = 0; place < 50; ++place) {
        const std::string before(place, 'a');
        const std::string after(50 - place, 'b');
        const Text expected = Text(place, u'a') + u'\n' + Text(50 - place, u'b');
        EXPECT_EQ(decodeJsonString(before + "\\n" + after), expected) << place;
        EXPECT_EQ(decodeJsonString(before + "\n" + after), std::nullopt) << place;
        EXPECT_EQ(decodeJsonString(before + "\xFF" + after), std::nullopt) << place;
    }
}

}  // namespace
}  // namespace lomaris
