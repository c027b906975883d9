#include "accessibility/model/json_value.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace lomaris {
namespace {

using namespace std::string_view_literals;

TEST(JsonParser, AcceptsWellFormedDocuments) {
    const std::vector<std::string_view> documents = {
        "null",     "true", " \t\r\n1 ",
        "-0.5e+7",  "\"\"", R"("\ud83d\ude00\u0000")",
        "[]",       "{}",   R"({"a":[1,{"b":null}]})",
        "\"\x7f\"",
    };
    for (const auto document : documents) {
        EXPECT_TRUE(parseJson(document)) << document;
    }
}

TEST(JsonParser, RefusesEverythingElse) {
    const std::vector<std::string_view> documents = {
        "",
        " ",
        "nul",
        "01",
        "+1",
        ".5",
        "1.",
        "1e",
        "-",
        "NaN",
        "Infinity",
        "'a'",
        "\"a",
        "\"\\x\"",
        "\"\n\"",
        "\"a\0b\""sv,
        "1\0"sv,
        "1\0 2"sv,
        R"("\ud800")",
        R"("\udc00")",
        R"("\ud800\u0041")",
        R"({"\udc00":1})",
        "\"\xff\"",
        "\"\xed\xa0\x80\"",
        "[1,]",
        "[1 2]",
        "{\"a\":1,}",
        "{\"a\" 1}",
        "{a:1}",
        "[1]]",
        "1 2",
        "/**/1",
        "[",
        "{\"a\":",
    };
    for (const auto document : documents) {
        EXPECT_FALSE(parseJson(document)) << document;
    }
}

TEST(JsonParser, KeepsEqualKeysInTheirOrder) {
    const auto document = parseJson(R"({"a":true,"b":"x","a":false})");
    ASSERT_TRUE(document);
    const auto& members = std::get<JsonObject>(document->value);
    ASSERT_EQ(members.size(), 3U);
    EXPECT_EQ(members[0].key, u"a");
    EXPECT_EQ(std::get<bool>(members[0].value.value), true);
    EXPECT_EQ(members[1].key, u"b");
    EXPECT_EQ(std::get<Text>(members[1].value.value), u"x");
    EXPECT_EQ(members[2].key, u"a");
    EXPECT_EQ(std::get<bool>(members[2].value.value), false);
}

TEST(JsonParser, AllowsNestingUpToItsLimit) {
    const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_TRUE(parseJson(nested(512)));
    EXPECT_FALSE(parseJson(nested(513)));
    EXPECT_FALSE(parseJson(std::string(1000000, '[')));
}

TEST(JsonParser, TakesANumberForAnIntegerWhenItsValueIsOne) {
    struct Example {
        std::string digits;
        std::optional<std::int64_t> value;
    };
    const std::vector<Example> examples = {
        {"0", 0},
        {"-0", 0},
        {"812", 812},
        {"812.0", 812},
        {"8.12e2", 812},
        {"8120e-1", 812},
        {"1.0000000000000000000000001", 1},
        {"9223372036854775807", 9223372036854775807},
        {"-9223372036854775808", -9223372036854775807 - 1},
        {"9223372036854775808", std::nullopt},
        {"-9223372036854777000", std::nullopt},
        {"1e19", std::nullopt},
        {"1e400", std::nullopt},
        {"1.5", std::nullopt},
        {"1e-3", std::nullopt},
    };
    for (const auto& example : examples) {
        EXPECT_EQ(integerValue(JsonNumber{example.digits}), example.value) << example.digits;
    }
}

}  // namespace
}  // namespace lomaris
