#include "accessibility/model/diagnostics_json.h"
#include "tests/support/diagnostics_printer.h"
#include "tests/support/json_object.h"

#include <gtest/gtest.h>

#include <string>

namespace lomaris {
namespace {

CompatibilityDiagnosticPayload compatibility() {
    CompatibilityDiagnosticPayload payload;
    payload.applicationName = u"Notes";
    payload.bundleIdentifier = u"com.example.notes";
    payload.selectionReadable = true;
    payload.selectionLength = 9;
    payload.selectionMethod = u"accessibility";
    payload.usesClipboardFallback = true;
    payload.supportsDirectReplacement = false;
    payload.contextBeforeLength = 500;
    payload.contextAfterLength = 12;
    return payload;
}

/// Returns the JSON of `compatibility` with the member `key` replaced by `value`, or left out if `value` is empty.
std::string compatibilityWith(const std::string& key, const std::string& value) {
    return test::objectOf(
        {
            {"schemaVersion", "1"},
            {"applicationName", "\"Notes\""},
            {"bundleIdentifier", "\"com.example.notes\""},
            {"selectionReadable", "true"},
            {"selectionLength", "9"},
            {"selectionMethod", "\"accessibility\""},
            {"usesClipboardFallback", "true"},
            {"supportsDirectReplacement", "false"},
            {"contextBeforeLength", "500"},
            {"contextAfterLength", "12"},
        },
        key, value);
}

TEST(CompatibilityDiagnosticJson, SortsTheKeysAndEscapesSlashesIfRequested) {
    CompatibilityDiagnosticPayload payload = compatibility();
    payload.applicationName = u"Notes/2";
    EXPECT_EQ(encodeJson(payload, SlashEscaping::escaped),
              "{\n"
              "  \"applicationName\" : \"Notes\\/2\",\n"
              "  \"bundleIdentifier\" : \"com.example.notes\",\n"
              "  \"contextAfterLength\" : 12,\n"
              "  \"contextBeforeLength\" : 500,\n"
              "  \"schemaVersion\" : 1,\n"
              "  \"selectionLength\" : 9,\n"
              "  \"selectionMethod\" : \"accessibility\",\n"
              "  \"selectionReadable\" : true,\n"
              "  \"supportsDirectReplacement\" : false,\n"
              "  \"usesClipboardFallback\" : true\n"
              "}");
    EXPECT_NE(encodeJson(payload, SlashEscaping::unescaped).find("\"Notes/2\""), std::string::npos);
}

TEST(CompatibilityDiagnosticJson, LeavesOutNameAndIdentifierWhenAbsent) {
    CompatibilityDiagnosticPayload payload = compatibility();
    payload.applicationName.reset();
    payload.bundleIdentifier.reset();
    EXPECT_EQ(encodeJson(payload, SlashEscaping::escaped),
              "{\n"
              "  \"contextAfterLength\" : 12,\n"
              "  \"contextBeforeLength\" : 500,\n"
              "  \"schemaVersion\" : 1,\n"
              "  \"selectionLength\" : 9,\n"
              "  \"selectionMethod\" : \"accessibility\",\n"
              "  \"selectionReadable\" : true,\n"
              "  \"supportsDirectReplacement\" : false,\n"
              "  \"usesClipboardFallback\" : true\n"
              "}");
    EXPECT_EQ(decodeCompatibilityDiagnostic(encodeJson(payload, SlashEscaping::escaped)), payload);
}

TEST(CompatibilityDiagnosticJson, DecodesACompleteRecordAndIgnoresUnknownKeys) {
    EXPECT_EQ(decodeCompatibilityDiagnostic(compatibilityWith("", "")), compatibility());
    EXPECT_EQ(decodeCompatibilityDiagnostic(encodeJson(compatibility(), SlashEscaping::escaped)), compatibility());
}

TEST(CompatibilityDiagnosticJson, ReadsAMissingOrNullOptionalFieldAsAbsent) {
    CompatibilityDiagnosticPayload expected = compatibility();
    expected.applicationName.reset();
    EXPECT_EQ(decodeCompatibilityDiagnostic(compatibilityWith("applicationName", "null")), expected);
    EXPECT_EQ(decodeCompatibilityDiagnostic(compatibilityWith("applicationName", "")), expected);
    expected = compatibility();
    expected.bundleIdentifier.reset();
    EXPECT_EQ(decodeCompatibilityDiagnostic(compatibilityWith("bundleIdentifier", "null")), expected);
    EXPECT_EQ(decodeCompatibilityDiagnostic(compatibilityWith("bundleIdentifier", "")), expected);
}

TEST(CompatibilityDiagnosticJson, RefusesMissingAndWrongRequiredFields) {
    for (const char* const key :
         {"schemaVersion", "selectionReadable", "selectionLength", "selectionMethod", "usesClipboardFallback",
          "supportsDirectReplacement", "contextBeforeLength", "contextAfterLength"}) {
        for (const char* const value : {"", "null", "[]", "{}", "1.5"}) {
            EXPECT_FALSE(decodeCompatibilityDiagnostic(compatibilityWith(key, value))) << key << ' ' << value;
        }
    }
    for (const char* const key : {"applicationName", "bundleIdentifier"}) {
        EXPECT_FALSE(decodeCompatibilityDiagnostic(compatibilityWith(key, "true"))) << key;
    }
    for (const char* const document : {"", "[]", "null", "{", "{}"}) {
        EXPECT_FALSE(decodeCompatibilityDiagnostic(document)) << document;
    }
}

}  // namespace
}  // namespace lomaris
