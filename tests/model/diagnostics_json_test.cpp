#include "accessibility/model/diagnostics_json.h"

#include "tests/support/diagnostics_printer.h"
#include "tests/support/json_object.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using test::JsonMembers;
using test::objectOf;

AccessibilityNodeDiagnostic bareNode() {
    AccessibilityNodeDiagnostic node;
    node.path = u"0.3.1";
    node.depth = 2;
    node.selectedTextStatus = -25212;
    return node;
}

AccessibilityNodeDiagnostic fullNode() {
    AccessibilityNodeDiagnostic node;
    node.path = u"0.3.1";
    node.depth = 2;
    node.role = u"AXTextField";
    node.subrole = u"AXSearchField";
    node.identifier = u"main/editor";
    node.focused = true;
    node.selectedTextStatus = 0;
    node.selectedTextLength = 4;
    node.selectedRange = SelectionRangePayload{10, 4};
    node.valueLength = 120;
    node.selectedTextSettable = true;
    node.childCount = 7;
    return node;
}

AccessibilityDiagnosticPayload payloadWith(std::vector<AccessibilityNodeDiagnostic> nodes) {
    AccessibilityDiagnosticPayload payload;
    payload.applicationName = u"Notes";
    payload.bundleIdentifier = u"com.example.notes";
    payload.processIdentifier = 812;
    payload.scannedNodeCount = 3000;
    payload.truncated = true;
    payload.relevantNodes = std::move(nodes);
    return payload;
}

/// Returns the JSON of `fullNode` with the member `key` replaced by `value`, or left out if `value` is empty.
std::string nodeWith(const std::string& key, const std::string& value) {
    return objectOf(
        {
            {"path", "\"0.3.1\""},
            {"depth", "2"},
            {"role", "\"AXTextField\""},
            {"subrole", "\"AXSearchField\""},
            {"identifier", R"("main\/editor")"},
            {"focused", "true"},
            {"selectedTextStatus", "0"},
            {"selectedTextLength", "4"},
            {"selectedRange", R"({"location":10,"length":4})"},
            {"valueLength", "120"},
            {"selectedTextSettable", "true"},
            {"childCount", "7"},
        },
        key, value);
}

/// Returns the JSON of a payload with `fullNode`, one member replaced or left out in the same way.
std::string diagnosticWith(const std::string& key, const std::string& value) {
    return objectOf(
        {
            {"applicationName", "\"Notes\""},
            {"bundleIdentifier", "\"com.example.notes\""},
            {"processIdentifier", "812"},
            {"scannedNodeCount", "3000"},
            {"truncated", "true"},
            {"relevantNodes", "[" + nodeWith("", "") + "]"},
        },
        key, value);
}

std::optional<AccessibilityDiagnosticPayload> decodeWithNode(const std::string& key, const std::string& value) {
    return decodeAccessibilityDiagnostic(diagnosticWith("relevantNodes", "[" + nodeWith(key, value) + "]"));
}

TEST(AccessibilityDiagnosticJson, SortsTheKeysAndEscapesSlashesIfRequested) {
    EXPECT_EQ(encodeJson(payloadWith({fullNode()}), SlashEscaping::escaped),
              "{\n"
              "  \"applicationName\" : \"Notes\",\n"
              "  \"bundleIdentifier\" : \"com.example.notes\",\n"
              "  \"processIdentifier\" : 812,\n"
              "  \"relevantNodes\" : [\n"
              "    {\n"
              "      \"childCount\" : 7,\n"
              "      \"depth\" : 2,\n"
              "      \"focused\" : true,\n"
              "      \"identifier\" : \"main\\/editor\",\n"
              "      \"path\" : \"0.3.1\",\n"
              "      \"role\" : \"AXTextField\",\n"
              "      \"selectedRange\" : {\n"
              "        \"length\" : 4,\n"
              "        \"location\" : 10\n"
              "      },\n"
              "      \"selectedTextLength\" : 4,\n"
              "      \"selectedTextSettable\" : true,\n"
              "      \"selectedTextStatus\" : 0,\n"
              "      \"subrole\" : \"AXSearchField\",\n"
              "      \"valueLength\" : 120\n"
              "    }\n"
              "  ],\n"
              "  \"scannedNodeCount\" : 3000,\n"
              "  \"truncated\" : true\n"
              "}");
    EXPECT_NE(encodeJson(payloadWith({fullNode()}), SlashEscaping::unescaped).find("\"main/editor\""),
              std::string::npos);
}

TEST(AccessibilityDiagnosticJson, WritesOnlyTheSixRequiredKeysOfABareNode) {
    AccessibilityDiagnosticPayload payload = payloadWith({bareNode(), bareNode()});
    payload.applicationName.reset();
    payload.bundleIdentifier.reset();
    EXPECT_EQ(encodeJson(payload, SlashEscaping::escaped),
              "{\n"
              "  \"processIdentifier\" : 812,\n"
              "  \"relevantNodes\" : [\n"
              "    {\n"
              "      \"childCount\" : 0,\n"
              "      \"depth\" : 2,\n"
              "      \"focused\" : false,\n"
              "      \"path\" : \"0.3.1\",\n"
              "      \"selectedTextSettable\" : false,\n"
              "      \"selectedTextStatus\" : -25212\n"
              "    },\n"
              "    {\n"
              "      \"childCount\" : 0,\n"
              "      \"depth\" : 2,\n"
              "      \"focused\" : false,\n"
              "      \"path\" : \"0.3.1\",\n"
              "      \"selectedTextSettable\" : false,\n"
              "      \"selectedTextStatus\" : -25212\n"
              "    }\n"
              "  ],\n"
              "  \"scannedNodeCount\" : 3000,\n"
              "  \"truncated\" : true\n"
              "}");
}

TEST(AccessibilityDiagnosticJson, WritesAnEmptyArrayOfNodes) {
    AccessibilityDiagnosticPayload payload = payloadWith({});
    payload.scannedNodeCount = 1;
    payload.truncated = false;
    EXPECT_EQ(encodeJson(payload, SlashEscaping::escaped),
              "{\n"
              "  \"applicationName\" : \"Notes\",\n"
              "  \"bundleIdentifier\" : \"com.example.notes\",\n"
              "  \"processIdentifier\" : 812,\n"
              "  \"relevantNodes\" : [\n"
              "\n"
              "  ],\n"
              "  \"scannedNodeCount\" : 1,\n"
              "  \"truncated\" : false\n"
              "}");
}

TEST(AccessibilityDiagnosticJson, SurvivesARoundTrip) {
    AccessibilityNodeDiagnostic extreme = fullNode();
    extreme.identifier = u"\"\\/\u0001\U0001F1EB\U0001F1F7";
    extreme.role = Text();
    extreme.depth = std::numeric_limits<std::int64_t>::max();
    extreme.childCount = std::numeric_limits<std::int64_t>::min();
    extreme.selectedTextStatus = std::numeric_limits<std::int32_t>::min();
    extreme.selectedRange = SelectionRangePayload{notFoundLocation, -1};
    extreme.selectedTextLength = 0;
    AccessibilityDiagnosticPayload nameless = payloadWith({});
    nameless.applicationName.reset();
    nameless.bundleIdentifier = Text();
    for (const auto& payload : {payloadWith({}), payloadWith({bareNode(), fullNode(), extreme}), nameless}) {
        for (const auto slashes : {SlashEscaping::escaped, SlashEscaping::unescaped}) {
            EXPECT_EQ(decodeAccessibilityDiagnostic(encodeJson(payload, slashes)), payload);
        }
    }
}

TEST(AccessibilityDiagnosticJson, DecodesCompleteRecordsAndIgnoresUnknownKeys) {
    EXPECT_EQ(decodeAccessibilityDiagnostic(diagnosticWith("", "")), payloadWith({fullNode()}));
    EXPECT_EQ(decodeAccessibilityDiagnostic(diagnosticWith("relevantNodes", "[]")), payloadWith({}));
    EXPECT_EQ(decodeAccessibilityDiagnostic(
                  diagnosticWith("relevantNodes", "[" + nodeWith("", "") + "," + nodeWith("", "") + "]")),
              payloadWith({fullNode(), fullNode()}));
}

TEST(AccessibilityDiagnosticJson, ReadsAMissingOrNullOptionalFieldAsAbsent) {
    const auto expectedNode = [](const std::string& key) {
        AccessibilityNodeDiagnostic node = fullNode();
        if (key == "role") {
            node.role.reset();
        } else if (key == "subrole") {
            node.subrole.reset();
        } else if (key == "identifier") {
            node.identifier.reset();
        } else if (key == "selectedTextLength") {
            node.selectedTextLength.reset();
        } else if (key == "selectedRange") {
            node.selectedRange.reset();
        } else if (key == "valueLength") {
            node.valueLength.reset();
        }
        return node;
    };
    for (const char* const key :
         {"role", "subrole", "identifier", "selectedTextLength", "selectedRange", "valueLength"}) {
        ASSERT_NE(expectedNode(key), fullNode()) << key;
        EXPECT_EQ(decodeWithNode(key, "null"), payloadWith({expectedNode(key)})) << key;
        EXPECT_EQ(decodeWithNode(key, ""), payloadWith({expectedNode(key)})) << key;
    }

    AccessibilityDiagnosticPayload expected = payloadWith({fullNode()});
    expected.applicationName.reset();
    EXPECT_EQ(decodeAccessibilityDiagnostic(diagnosticWith("applicationName", "null")), expected);
    EXPECT_EQ(decodeAccessibilityDiagnostic(diagnosticWith("applicationName", "")), expected);
    expected = payloadWith({fullNode()});
    expected.bundleIdentifier.reset();
    EXPECT_EQ(decodeAccessibilityDiagnostic(diagnosticWith("bundleIdentifier", "null")), expected);
    EXPECT_EQ(decodeAccessibilityDiagnostic(diagnosticWith("bundleIdentifier", "")), expected);
}

TEST(AccessibilityDiagnosticJson, RefusesARecordWithoutARequiredField) {
    for (const char* const key : {"processIdentifier", "scannedNodeCount", "truncated", "relevantNodes"}) {
        EXPECT_FALSE(decodeAccessibilityDiagnostic(diagnosticWith(key, ""))) << key;
        EXPECT_FALSE(decodeAccessibilityDiagnostic(diagnosticWith(key, "null"))) << key;
    }
    for (const char* const key :
         {"path", "depth", "focused", "selectedTextStatus", "selectedTextSettable", "childCount"}) {
        EXPECT_FALSE(decodeWithNode(key, "")) << key;
        EXPECT_FALSE(decodeWithNode(key, "null")) << key;
    }
}

TEST(AccessibilityDiagnosticJson, RefusesValuesOfTheWrongTypeOrOutOfRange) {
    const JsonMembers wrong = {
        {"applicationName", "1"},
        {"bundleIdentifier", "[]"},
        {"processIdentifier", "2147483648"},
        {"processIdentifier", "\"812\""},
        {"scannedNodeCount", "1.5"},
        {"scannedNodeCount", "9223372036854775808"},
        {"truncated", "1"},
        {"relevantNodes", "{}"},
        {"relevantNodes", "\"\""},
        {"relevantNodes", "[null]"},
        {"relevantNodes", "[[]]"},
        {"relevantNodes", "[" + nodeWith("", "") + ",{}]"},
    };
    for (const auto& [key, value] : wrong) {
        EXPECT_FALSE(decodeAccessibilityDiagnostic(diagnosticWith(key, value))) << key << ' ' << value;
    }
    const JsonMembers wrongInNode = {
        {"path", "0"},
        {"depth", "\"2\""},
        {"depth", "2.5"},
        {"role", "true"},
        {"subrole", "1"},
        {"identifier", "{}"},
        {"focused", "\"true\""},
        {"selectedTextStatus", "-2147483649"},
        {"selectedTextLength", "\"4\""},
        {"selectedTextLength", "4.5"},
        {"selectedRange", "[10,4]"},
        {"selectedRange", R"({"location":10})"},
        {"valueLength", "false"},
        {"selectedTextSettable", "0"},
        {"childCount", "[]"},
    };
    for (const auto& [key, value] : wrongInNode) {
        EXPECT_FALSE(decodeWithNode(key, value)) << key << ' ' << value;
    }
    for (const char* const document : {"", "[]", "null", "{", "{}"}) {
        EXPECT_FALSE(decodeAccessibilityDiagnostic(document)) << document;
    }
}

}  // namespace
}  // namespace lomaris
