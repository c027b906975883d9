#include "accessibility/model/selection_json.h"

#include "tests/support/vectors.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace lomaris {
namespace {

SelectionPayload fullPayload() {
    SelectionPayload payload;
    payload.applicationName = u"Notes";
    payload.bundleIdentifier = u"com.example.notes";
    payload.processIdentifier = 812;
    payload.selectedText = u"brown fox";
    payload.contextBefore = u"The quick ";
    payload.contextAfter = u" jumps over";
    payload.selectedRange = SelectionRangePayload{10, 9};
    payload.inputActivity = {1532, 210, 4, 0};
    payload.supportsDirectReplacement = true;
    payload.selectionMethod = selection_method::accessibility;
    return payload;
}

std::optional<Text> optionalTextOf(const nlohmann::json& value) {
    return value.is_null() ? std::nullopt : std::optional(test::textOf(value));
}

SelectionPayload payloadOf(const nlohmann::json& fields) {
    SelectionPayload payload;
    payload.applicationName = optionalTextOf(fields.at("applicationName"));
    payload.bundleIdentifier = optionalTextOf(fields.at("bundleIdentifier"));
    payload.processIdentifier = fields.at("pid").get<std::int32_t>();
    payload.selectedText = test::textOf(fields.at("selectedText"));
    payload.contextBefore = test::textOf(fields.at("contextBefore"));
    payload.contextAfter = test::textOf(fields.at("contextAfter"));
    if (const auto& range = fields.at("range"); !range.is_null()) {
        payload.selectedRange = SelectionRangePayload{range.at(0).get<std::int64_t>(), range.at(1).get<std::int64_t>()};
    }
    const auto& activity = fields.at("activity");
    payload.inputActivity = {activity.at(0).get<std::uint32_t>(), activity.at(1).get<std::uint32_t>(),
                             activity.at(2).get<std::uint32_t>(), activity.at(3).get<std::uint32_t>()};
    payload.supportsDirectReplacement = fields.at("supports").get<bool>();
    for (const char character : fields.at("method").get<std::string>()) {
        payload.selectionMethod.push_back(static_cast<char16_t>(character));
    }
    return payload;
}

TEST(SelectionJson, MatchesThePlatformEncoderInEveryReferenceCase) {
    for (const auto& vector : test::readVectors("selection-json")) {
        const auto slashes = vector.value.at("slashes").get<bool>() ? SlashEscaping::escaped : SlashEscaping::unescaped;
        EXPECT_EQ(encodeJson(payloadOf(vector.value), slashes), test::bytesOf(vector.value.at("expected").at("json")))
            << "line " << vector.line;
    }
}

TEST(SelectionJson, DecodesEveryReferenceCase) {
    for (const auto& vector : test::readVectors("selection-json")) {
        const std::string bytes = test::bytesOf(vector.value.at("expected").at("json"));
        const auto decoded = decodeSelectionPayload(bytes);
        ASSERT_TRUE(decoded) << "line " << vector.line;
        const auto slashes = vector.value.at("slashes").get<bool>() ? SlashEscaping::escaped : SlashEscaping::unescaped;
        EXPECT_EQ(encodeJson(*decoded, slashes), bytes) << "line " << vector.line;
    }
}

TEST(SelectionJson, SortsTheKeysAndNestsRangeAndActivity) {
    EXPECT_EQ(encodeJson(fullPayload(), SlashEscaping::unescaped),
              "{\n"
              "  \"applicationName\" : \"Notes\",\n"
              "  \"bundleIdentifier\" : \"com.example.notes\",\n"
              "  \"contextAfter\" : \" jumps over\",\n"
              "  \"contextBefore\" : \"The quick \",\n"
              "  \"inputActivity\" : {\n"
              "    \"keyDownCount\" : 1532,\n"
              "    \"leftMouseDownCount\" : 210,\n"
              "    \"otherMouseDownCount\" : 0,\n"
              "    \"rightMouseDownCount\" : 4\n"
              "  },\n"
              "  \"processIdentifier\" : 812,\n"
              "  \"selectedRange\" : {\n"
              "    \"length\" : 9,\n"
              "    \"location\" : 10\n"
              "  },\n"
              "  \"selectedText\" : \"brown fox\",\n"
              "  \"selectionMethod\" : \"accessibility\",\n"
              "  \"supportsDirectReplacement\" : true\n"
              "}");
}

TEST(SelectionJson, LeavesOutNameIdentifierAndRangeWhenAbsent) {
    SelectionPayload payload = fullPayload();
    payload.applicationName.reset();
    payload.bundleIdentifier.reset();
    payload.selectedRange.reset();
    EXPECT_EQ(encodeJson(payload, SlashEscaping::unescaped),
              "{\n"
              "  \"contextAfter\" : \" jumps over\",\n"
              "  \"contextBefore\" : \"The quick \",\n"
              "  \"inputActivity\" : {\n"
              "    \"keyDownCount\" : 1532,\n"
              "    \"leftMouseDownCount\" : 210,\n"
              "    \"otherMouseDownCount\" : 0,\n"
              "    \"rightMouseDownCount\" : 4\n"
              "  },\n"
              "  \"processIdentifier\" : 812,\n"
              "  \"selectedText\" : \"brown fox\",\n"
              "  \"selectionMethod\" : \"accessibility\",\n"
              "  \"supportsDirectReplacement\" : true\n"
              "}");
}

/// Returns a complete document with the member `key` replaced by `value`, or left out if `value` is empty.
std::string documentWith(const std::string& key, const std::string& value) {
    const std::vector<std::pair<std::string, std::string>> members = {
        {"applicationName", "\"Notes\""},
        {"bundleIdentifier", "\"com.example.notes\""},
        {"processIdentifier", "812"},
        {"selectedText", "\"brown fox\""},
        {"contextBefore", "\"The quick \""},
        {"contextAfter", "\" jumps over\""},
        {"selectedRange", R"({"location":10,"length":9})"},
        {"inputActivity",
         R"({"keyDownCount":1532,"leftMouseDownCount":210,"rightMouseDownCount":4,"otherMouseDownCount":0})"},
        {"supportsDirectReplacement", "true"},
        {"selectionMethod", "\"accessibility\""},
    };
    std::string document = "{\"unknown\":[1,{}]";
    for (const auto& [name, usual] : members) {
        const std::string& chosen = name == key ? value : usual;
        if (!chosen.empty()) {
            document += ",\"" + name + "\":" + chosen;
        }
    }
    return document + "}";
}

TEST(SelectionJson, DecodesACompleteDocumentAndIgnoresUnknownKeys) {
    EXPECT_EQ(decodeSelectionPayload(documentWith("", "")), fullPayload());
}

TEST(SelectionJson, ReadsAMissingOrNullOptionalFieldAsAbsent) {
    SelectionPayload expected = fullPayload();
    expected.selectedRange.reset();
    EXPECT_EQ(decodeSelectionPayload(documentWith("selectedRange", "null")), expected);
    EXPECT_EQ(decodeSelectionPayload(documentWith("selectedRange", "")), expected);

    expected = fullPayload();
    expected.applicationName.reset();
    EXPECT_EQ(decodeSelectionPayload(documentWith("applicationName", "null")), expected);
    EXPECT_EQ(decodeSelectionPayload(documentWith("applicationName", "")), expected);

    expected = fullPayload();
    expected.bundleIdentifier.reset();
    EXPECT_EQ(decodeSelectionPayload(documentWith("bundleIdentifier", "null")), expected);
    EXPECT_EQ(decodeSelectionPayload(documentWith("bundleIdentifier", "")), expected);
}

TEST(SelectionJson, RefusesADocumentWithoutARequiredField) {
    for (const auto* key : {"processIdentifier", "selectedText", "contextBefore", "contextAfter", "inputActivity",
                            "supportsDirectReplacement", "selectionMethod"}) {
        EXPECT_FALSE(decodeSelectionPayload(documentWith(key, ""))) << key;
        EXPECT_FALSE(decodeSelectionPayload(documentWith(key, "null"))) << key;
    }
}

TEST(SelectionJson, RefusesValuesOfTheWrongTypeOrOutOfRange) {
    const std::vector<std::pair<std::string, std::string>> wrong = {
        {"applicationName", "1"},
        {"bundleIdentifier", "[]"},
        {"processIdentifier", "\"812\""},
        {"processIdentifier", "2147483648"},
        {"processIdentifier", "-2147483649"},
        {"processIdentifier", "1.5"},
        {"processIdentifier", "true"},
        {"selectedText", "1"},
        {"contextBefore", "{}"},
        {"contextAfter", "false"},
        {"selectedRange", "[10,9]"},
        {"selectedRange", R"({"location":10})"},
        {"selectedRange", R"({"location":10,"length":null})"},
        {"selectedRange", R"({"location":9223372036854775808,"length":1})"},
        {"inputActivity", R"({"keyDownCount":1,"leftMouseDownCount":1,"rightMouseDownCount":1})"},
        {"inputActivity",
         R"({"keyDownCount":4294967296,"leftMouseDownCount":1,"rightMouseDownCount":1,"otherMouseDownCount":1})"},
        {"inputActivity",
         R"({"keyDownCount":-1,"leftMouseDownCount":1,"rightMouseDownCount":1,"otherMouseDownCount":1})"},
        {"supportsDirectReplacement", "1"},
        {"selectionMethod", "true"},
    };
    for (const auto& [key, value] : wrong) {
        EXPECT_FALSE(decodeSelectionPayload(documentWith(key, value))) << key << " " << value;
    }
    EXPECT_FALSE(decodeSelectionPayload("[]"));
    EXPECT_FALSE(decodeSelectionPayload("{"));
}

TEST(SelectionJson, RoundTripsTheGreatestNumbers) {
    SelectionPayload payload = fullPayload();
    constexpr std::uint32_t greatest = std::numeric_limits<std::uint32_t>::max();
    payload.inputActivity = {greatest, greatest, greatest, greatest};
    payload.selectedRange =
        SelectionRangePayload{std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()};
    payload.processIdentifier = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(decodeSelectionPayload(encodeJson(payload, SlashEscaping::escaped)), payload);
}

TEST(SelectionJson, UsesTheFirstOfTwoEqualKeys) {
    const auto payload = decodeSelectionPayload(
        documentWith("selectionMethod", R"("accessibility","selectionMethod":"keyboardClipboardFallback")"));
    ASSERT_TRUE(payload);
    EXPECT_EQ(payload->selectionMethod, selection_method::accessibility);
}

}  // namespace
}  // namespace lomaris
