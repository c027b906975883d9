#include "json/json_value.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using namespace std::string_view_literals;

TEST(JsonParser, ReturnsTheKindAndTheBytesOfADocument) {
    struct Example {
        std::string_view document;
        JsonValue root;
    };
    const std::vector<Example> examples = {
        {"null", {JsonKind::null, "null"}},
        {"true", {JsonKind::boolean, "true"}},
        {"\nfalse\n", {JsonKind::boolean, "false"}},
        {" \t\r\n1 ", {JsonKind::number, "1"}},
        {"-0.5e+7", {JsonKind::number, "-0.5e+7"}},
        {"\"\"", {JsonKind::string, ""}},
        {R"("a\"\\")", {JsonKind::string, R"(a\"\\)"}},
        {" [] ", {JsonKind::array, "[]"}},
        {"[ ]", {JsonKind::array, "[ ]"}},
        {"{ }", {JsonKind::object, "{ }"}},
        {R"( { "a" : [ 1 , { "b":null } ] , "c":[[]] } )",
         {JsonKind::object, R"({ "a" : [ 1 , { "b":null } ] , "c":[[]] })"}},
        {"\xEF\xBB\xBF 1", {JsonKind::number, "1"}},
    };
    for (const auto& [bytes, root] : examples) {
        const auto document = parseJson(bytes);
        ASSERT_TRUE(document) << bytes;
        EXPECT_EQ(document->root(), root) << bytes;
    }
}

TEST(JsonParser, RefusesAnythingButOneDocument) {
    const std::vector<std::string_view> documents = {
        "",
        " ",
        "nul",
        "nulll",
        "True",
        "+1",
        ".5",
        "NaN",
        "\0"sv,
        "Infinity",
        "'a'",
        "\"a",
        "\"",
        "\"\\",
        "\"\\\"",
        "\"a\\",
        "1\0"sv,
        "1\0 2"sv,
        "1 2",
        "1,",
        "[1]]",
        "{}}",
        "[1,]",
        "[,1]",
        "[,]",
        "[1,,2]",
        "[1 2]",
        "[1:2]",
        "[",
        "[1",
        "[1,",
        "]",
        "[}",
        "{]",
        "[1}",
        "{\"a\":1]",
        "{",
        "}",
        "{\"a\"",
        "{\"a\":",
        "{\"a\":1",
        "{\"a\":1,",
        "{\"a\":1,}",
        "{,}",
        "{\"a\" 1}",
        "{\"a\"}",
        "{\"a\":}",
        "{\"a\"::1}",
        "{a:1}",
        "{1:1}",
        "{null:1}",
        "{'a':1}",
        "/**/1",
        "1/**/",
        "[1,/**/2]",
        "//\n1",
        "\f1",
        "\v1",
        "\xC2\xA0"
        "1",
        "\xEF\xBB"
        "1",
        "\xEF\xBB\xBF\xEF\xBB\xBF"
        "1",
    };
    for (const auto document : documents) {
        EXPECT_FALSE(parseJson(document)) << document;
    }
}

TEST(JsonParser, DoesNotValidateStringsAndNumbers) {
    const std::vector<std::pair<std::string_view, JsonValue>> examples = {
        {"\"a\0\n\""sv, {JsonKind::string, "a\0\n"sv}},
        {R"("\x\ud800\u12")", {JsonKind::string, R"(\x\ud800\u12)"}},
        {"\"\xFF\xED\xA0\x80\"", {JsonKind::string, "\xFF\xED\xA0\x80"}},
        {"01", {JsonKind::number, "01"}},
        {"-", {JsonKind::number, "-"}},
        {"1.", {JsonKind::number, "1."}},
        {"1e400", {JsonKind::number, "1e400"}},
        {"0-1+2.e.E", {JsonKind::number, "0-1+2.e.E"}},
    };
    for (const auto& [bytes, root] : examples) {
        const auto document = parseJson(bytes);
        ASSERT_TRUE(document) << bytes;
        EXPECT_EQ(document->root(), root) << bytes;
    }
}

TEST(JsonParser, FindsTheEndOfAStringAtEveryLength) {
    for (std::size_t length = 0; length < 70; ++length) {
        const std::string plain(length, 'a');
        for (const std::string& written : {plain, plain + "\\\"", "\\\\" + plain, plain + "\\\\" + plain}) {
            const std::string document = "[\"" + written + "\"]";
            const auto parsed = parseJson(document);
            ASSERT_TRUE(parsed) << document;
            const std::vector<JsonValue> expected = {{JsonKind::string, written}};
            EXPECT_EQ(elementsOf(parsed->root()), expected) << document;
            EXPECT_FALSE(parseJson(document.substr(0, document.size() - 2))) << document;
        }
    }
}

TEST(JsonParser, AllowsNestingUpToItsLimit) {
    const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_TRUE(parseJson(nested(512)));
    EXPECT_FALSE(parseJson(nested(513)));
    EXPECT_FALSE(parseJson(nested(100000)));
    EXPECT_FALSE(parseJson(std::string(1000000, '[')));
}

TEST(JsonParser, CountsOpenObjectsAndArraysTogether) {
    std::string opening;
    std::string closing;
    for (int pair = 0; pair < 256; ++pair) {
        opening += R"({"a":[)";
        closing += "]}";
    }
    EXPECT_TRUE(parseJson(opening + closing));
    EXPECT_TRUE(parseJson(opening + "1,2" + closing));
    EXPECT_FALSE(parseJson(opening + "{}" + closing));
    std::string beside = "[[]";
    for (int count = 0; count < 2000; ++count) {
        beside += ",[{}]";
    }
    EXPECT_TRUE(parseJson(beside + "]"));
}

TEST(JsonParser, ConvertsADocumentInAnotherEncoding) {
    auto document = parseJson("[\0\"\0\xE9\0\"\0]\0"sv);
    ASSERT_TRUE(document);
    const JsonDocument moved = std::move(*document);
    EXPECT_EQ(moved.root(), (JsonValue{JsonKind::array, "[\"\xC3\xA9\"]"}));
    EXPECT_FALSE(parseJson("[\0\"\0\0\xD8\"\0]\0"sv)) << "half a pair";
    EXPECT_FALSE(parseJson("[\0]\0\0"sv)) << "half a unit";
}

/// Returns the members of an object. Returns nullopt if `value` is not an object.
std::optional<std::vector<JsonMember>> membersOf(const JsonValue& value) {
    std::vector<JsonMember> members;
    const bool isObject = visitMembers(value, [&members](const JsonMember& member) { members.push_back(member); });
    return isObject ? std::optional(members) : std::nullopt;
}

TEST(JsonMembers, KeepTheirOrderAndEqualKeys) {
    const auto document = parseJson(R"( { "a" :true, "\u0061":"x","a":[1, 2] ,"b":{} } )");
    ASSERT_TRUE(document);
    const std::vector<JsonMember> expected = {
        {"a", {JsonKind::boolean, "true"}},
        {"\\u0061", {JsonKind::string, "x"}},
        {"a", {JsonKind::array, "[1, 2]"}},
        {"b", {JsonKind::object, "{}"}},
    };
    EXPECT_EQ(membersOf(document->root()), expected);
}

TEST(JsonMembers, AreThoseOfObjectsOnly) {
    EXPECT_EQ(membersOf(parseJson("{ }")->root()), std::vector<JsonMember>());
    for (const auto* other : {"[]", "null", "1", "\"{}\""}) {
        EXPECT_EQ(membersOf(parseJson(other)->root()), std::nullopt) << other;
    }
}

TEST(JsonElements, AreThoseOfArraysOnly) {
    const std::vector<JsonValue> expected = {
        {JsonKind::number, "1"}, {JsonKind::array, "[ 2,3 ]"}, {JsonKind::string, ","}, {JsonKind::null, "null"}};
    EXPECT_EQ(elementsOf(parseJson(R"([1 , [ 2,3 ],",", null ])")->root()), expected);
    EXPECT_EQ(elementsOf(parseJson("[ ]")->root()), std::vector<JsonValue>());
    for (const auto* other : {"{}", "null", "1", "\"[]\""}) {
        EXPECT_EQ(elementsOf(parseJson(other)->root()), std::nullopt) << other;
    }
}

}  // namespace
}  // namespace lomaris
