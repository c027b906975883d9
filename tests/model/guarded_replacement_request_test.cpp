#include "accessibility/model/guarded_replacement_request_json.h"

#include "tests/support/vectors.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

GuardedReplacementRequest fullRequest() {
    GuardedReplacementRequest request;
    request.expectedText = u"brown fox";
    request.expectedProcessIdentifier = 812;
    request.expectedBundleIdentifier = u"com.example.notes";
    request.expectedSelectedRange = SelectionRangePayload{10, 9};
    request.expectedInputActivity = {1532, 210, 4, 0};
    request.replacementText = u"red fox";
    return request;
}

/// Returns a complete document with the member `key` replaced by `value`, or left out if `value` is empty.
std::string documentWith(const std::string& key, const std::string& value) {
    const std::vector<std::pair<std::string, std::string>> members = {
        {"expectedText", "\"brown fox\""},
        {"expectedProcessIdentifier", "812"},
        {"expectedBundleIdentifier", "\"com.example.notes\""},
        {"expectedSelectedRange", R"({"location":10,"length":9})"},
        {"expectedInputActivity",
         R"({"keyDownCount":1532,"leftMouseDownCount":210,"rightMouseDownCount":4,"otherMouseDownCount":0})"},
        {"replacementText", "\"red fox\""},
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

std::string completeDocument() { return documentWith("", ""); }

/// Returns an object of four counters of 1, with the counter `key` replaced by `value`.
std::string activityWith(const std::string& key, const std::string& value) {
    std::string object;
    for (const auto* name : {"keyDownCount", "leftMouseDownCount", "rightMouseDownCount", "otherMouseDownCount"}) {
        object += (object.empty() ? "{\"" : ",\"") + std::string(name) + "\":" + (name == key ? value : "1");
    }
    return object + "}";
}

/// Returns `document`, which must be ASCII, with every character in a unit of `size` bytes.
std::string inUnitsOf(std::size_t size, std::size_t placeOfByte, const std::string& document) {
    std::string encoded;
    for (const char character : document) {
        std::string unit(size, '\0');
        unit.at(placeOfByte) = character;
        encoded += unit;
    }
    return encoded;
}

std::optional<Text> textAt(const nlohmann::json& expected, const char* key) {
    return expected.contains(key) ? textFromValidUtf8(test::bytesOf(expected.at(key))) : std::nullopt;
}

std::optional<GuardedReplacementRequest> requestOf(const nlohmann::json& expected) {
    if (!expected.at("accepted").get<bool>()) {
        return std::nullopt;
    }
    GuardedReplacementRequest request;
    request.expectedText = textAt(expected, "expectedText").value();
    request.expectedProcessIdentifier = expected.at("expectedProcessIdentifier").get<ProcessIdentifier>();
    request.expectedBundleIdentifier = textAt(expected, "expectedBundleIdentifier");
    if (expected.contains("expectedSelectedRange")) {
        const auto& range = expected.at("expectedSelectedRange");
        request.expectedSelectedRange =
            SelectionRangePayload{range.at(0).get<std::int64_t>(), range.at(1).get<std::int64_t>()};
    }
    const auto& counters = expected.at("counters");
    request.expectedInputActivity = {counters.at(0).get<std::uint32_t>(), counters.at(1).get<std::uint32_t>(),
                                     counters.at(2).get<std::uint32_t>(), counters.at(3).get<std::uint32_t>()};
    request.replacementText = textAt(expected, "replacementText").value();
    return request;
}

TEST(GuardedReplacementRequest, MatchesThePlatformDecoderInEveryReferenceCase) {
    int accepted = 0;
    for (const auto& vector : test::readVectors("request-json")) {
        const auto expected = requestOf(vector.value.at("expected"));
        accepted += expected ? 1 : 0;
        EXPECT_EQ(decodeGuardedReplacementRequest(test::bytesOf(vector.value.at("bytes"))), expected)
            << "line " << vector.line;
    }
    EXPECT_GT(accepted, 50);
}

TEST(GuardedReplacementRequest, IsDecodedFromACompleteDocument) {
    EXPECT_EQ(decodeGuardedReplacementRequest(completeDocument()), fullRequest());
}

TEST(GuardedReplacementRequest, NeedsNeitherBundleIdentifierNorRange) {
    GuardedReplacementRequest expected = fullRequest();
    expected.expectedBundleIdentifier.reset();
    EXPECT_EQ(decodeGuardedReplacementRequest(documentWith("expectedBundleIdentifier", "")), expected);
    EXPECT_EQ(decodeGuardedReplacementRequest(documentWith("expectedBundleIdentifier", "null")), expected);

    expected = fullRequest();
    expected.expectedSelectedRange.reset();
    EXPECT_EQ(decodeGuardedReplacementRequest(documentWith("expectedSelectedRange", "")), expected);
    EXPECT_EQ(decodeGuardedReplacementRequest(documentWith("expectedSelectedRange", "null")), expected);

    expected.expectedBundleIdentifier.reset();
    EXPECT_EQ(decodeGuardedReplacementRequest(encodeJson(expected, SlashEscaping::unescaped)), expected);
}

TEST(GuardedReplacementRequest, NeedsEveryOtherField) {
    for (const auto* key : {"expectedText", "expectedProcessIdentifier", "expectedInputActivity", "replacementText"}) {
        EXPECT_FALSE(decodeGuardedReplacementRequest(documentWith(key, ""))) << key;
        EXPECT_FALSE(decodeGuardedReplacementRequest(documentWith(key, "null"))) << key;
    }
    for (const auto* document : {"", " ", "{}", "[]", "null", "\"x\"", "1"}) {
        EXPECT_FALSE(decodeGuardedReplacementRequest(document)) << document;
    }
}

TEST(GuardedReplacementRequest, AcceptsEmptyTextsAndNegativeRanges) {
    GuardedReplacementRequest request = fullRequest();
    request.expectedText.clear();
    request.expectedBundleIdentifier = u"";
    request.replacementText.clear();
    request.expectedSelectedRange = SelectionRangePayload{-1, -9};
    EXPECT_EQ(decodeGuardedReplacementRequest(encodeJson(request, SlashEscaping::unescaped)), request);
}

TEST(GuardedReplacementRequest, AcceptsAnyNumberWithAnIntegerValue) {
    for (const auto* number : {"812", "812.0", "8.12e2", "8120e-1", "812.0000000000000000000000001"}) {
        EXPECT_EQ(decodeGuardedReplacementRequest(documentWith("expectedProcessIdentifier", number)), fullRequest())
            << number;
    }
}

TEST(GuardedReplacementRequest, RefusesAProcessIdentifierOutsideSigned32Bit) {
    for (const auto* value : {"4294967296", "2147483648", "-2147483649", "812.5", "1e400", "0812", "+812", "-", "true",
                              "\"812\"", "[812]", "{}"}) {
        EXPECT_FALSE(decodeGuardedReplacementRequest(documentWith("expectedProcessIdentifier", value))) << value;
    }
}

TEST(GuardedReplacementRequest, RefusesTextsOfTheWrongTypeOrIllFormed) {
    for (const auto* key : {"expectedText", "expectedBundleIdentifier", "replacementText"}) {
        for (const auto* value : {"1", "true", "[]", "{}", "[\"a\"]", "\"\\x\"", "\"\\ud800\"", "\"\n\"", "\"\xFF\""}) {
            EXPECT_FALSE(decodeGuardedReplacementRequest(documentWith(key, value))) << key << " " << value;
        }
    }
}

TEST(GuardedReplacementRequest, RefusesARangeThatIsNotTwoIntegers) {
    for (const auto* value :
         {"[10,9]", "\"x\"", "0", "false", "{}", R"({"location":10})", R"({"length":9})",
          R"({"location":10,"length":null})", R"({"location":"10","length":9})", R"({"location":1.5,"length":9})",
          R"({"location":9223372036854775808,"length":9})", R"({"location":true,"length":9})"}) {
        EXPECT_FALSE(decodeGuardedReplacementRequest(documentWith("expectedSelectedRange", value))) << value;
    }
}

TEST(GuardedReplacementRequest, RefusesCountersOutsideUnsigned32Bit) {
    for (const auto* key : {"keyDownCount", "leftMouseDownCount", "rightMouseDownCount", "otherMouseDownCount"}) {
        EXPECT_TRUE(decodeGuardedReplacementRequest(documentWith("expectedInputActivity", activityWith(key, "2"))));
        for (const auto* value : {"-1", "4294967296", "1.5", "true", "null", "\"1\""}) {
            EXPECT_FALSE(
                decodeGuardedReplacementRequest(documentWith("expectedInputActivity", activityWith(key, value))))
                << key << " " << value;
        }
    }
    for (const auto* value : {"{}", "[]", "\"x\"", "1"}) {
        EXPECT_FALSE(decodeGuardedReplacementRequest(documentWith("expectedInputActivity", value))) << value;
    }
}

TEST(GuardedReplacementRequest, IsRefusedIfCutAtAnyByte) {
    const std::string document = completeDocument();
    for (std::size_t length = 0; length < document.size(); ++length) {
        EXPECT_FALSE(decodeGuardedReplacementRequest(document.substr(0, length))) << length;
    }
}

TEST(GuardedReplacementRequest, IsRefusedIfAnythingFollows) {
    EXPECT_TRUE(decodeGuardedReplacementRequest(completeDocument() + " \r\n\t"));
    for (const auto* after : {"x", ",", "{}", "}", "\xEF\xBB\xBF", "\f"}) {
        EXPECT_FALSE(decodeGuardedReplacementRequest(completeDocument() + after)) << after;
    }
    EXPECT_FALSE(decodeGuardedReplacementRequest(completeDocument() + '\0'));
}

TEST(GuardedReplacementRequest, IsRefusedWithATrailingComma) {
    std::string document = completeDocument();
    ASSERT_TRUE(decodeGuardedReplacementRequest(document));
    document.back() = ',';
    EXPECT_FALSE(decodeGuardedReplacementRequest(document + "}"));
    EXPECT_FALSE(decodeGuardedReplacementRequest(document + " \n}"));
    EXPECT_FALSE(
        decodeGuardedReplacementRequest(documentWith("expectedSelectedRange", R"({"location":10,"length":9,})")));
    const std::string activity = activityWith("", "");
    ASSERT_TRUE(decodeGuardedReplacementRequest(documentWith("expectedInputActivity", activity)));
    EXPECT_FALSE(decodeGuardedReplacementRequest(
        documentWith("expectedInputActivity", activity.substr(0, activity.size() - 1) + ",}")));
    // Also refused in the value of an unknown key, which is otherwise ignored.
    for (const auto* value : {"[1,]", "{\"a\":1,}"}) {
        EXPECT_FALSE(
            decodeGuardedReplacementRequest("{\"other\":" + std::string(value) + "," + completeDocument().substr(1)))
            << value;
    }
}

TEST(GuardedReplacementRequest, DoesNotValidateValuesOfUnknownKeys) {
    using namespace std::string_literals;
    for (const auto& value : {"\"a\0\n\""s, "\"\\x\\ud800\""s, "\"\xFF\""s, "01"s, "1e400"s, "{\"\n\":1}"s}) {
        const std::string document = completeDocument();
        EXPECT_EQ(decodeGuardedReplacementRequest("{\"other\":" + value + "," + document.substr(1)), fullRequest())
            << value;
    }
}

TEST(GuardedReplacementRequest, RefusesKeysThatAreNotStrings) {
    for (const auto* key : {"\"\n\"", "\"\\x\"", "\"\\udc00\"", "\"\xFF\"", "1", "null"}) {
        EXPECT_FALSE(decodeGuardedReplacementRequest("{" + std::string(key) + ":1," + completeDocument().substr(1)))
            << key;
    }
}

TEST(GuardedReplacementRequest, UsesTheFirstOfEqualKeysEvenIfEscaped) {
    const std::string rest = completeDocument().substr(1);
    GuardedReplacementRequest expected = fullRequest();
    expected.expectedText = u"first";
    EXPECT_EQ(decodeGuardedReplacementRequest(R"({"expectedText":"first",)" + rest), expected);
    EXPECT_EQ(decodeGuardedReplacementRequest(R"({"expected\u0054ext":"first",)" + rest), expected);

    expected = fullRequest();
    expected.expectedSelectedRange.reset();
    EXPECT_EQ(decodeGuardedReplacementRequest(R"({"expectedSelectedRange":null,)" + rest), expected);
    EXPECT_FALSE(decodeGuardedReplacementRequest(R"({"replacementText":null,)" + rest));
}

TEST(GuardedReplacementRequest, IsReadInEveryUnicodeEncoding) {
    const std::string document = completeDocument();
    struct Example {
        const char* name;
        std::string bytes;
    };
    const std::vector<Example> accepted = {
        {"UTF-8 with a mark", "\xEF\xBB\xBF" + document},
        {"UTF-16BE", inUnitsOf(2, 1, document)},
        {"UTF-16LE", inUnitsOf(2, 0, document)},
        {"UTF-16BE with a mark", "\xFE\xFF" + inUnitsOf(2, 1, document)},
        {"UTF-16LE with a mark", "\xFF\xFE" + inUnitsOf(2, 0, document)},
        {"UTF-32BE", inUnitsOf(4, 3, document)},
        {"UTF-32LE", inUnitsOf(4, 0, document)},
        {"UTF-32BE with a mark", std::string("\0\0\xFE\xFF", 4) + inUnitsOf(4, 3, document)},
    };
    for (const auto& [name, bytes] : accepted) {
        EXPECT_EQ(decodeGuardedReplacementRequest(bytes), fullRequest()) << name;
        EXPECT_FALSE(decodeGuardedReplacementRequest(bytes.substr(0, bytes.size() - 1))) << name;
    }
    const std::vector<Example> refused = {
        {"UTF-32LE with a mark", std::string("\xFF\xFE\0\0", 4) + inUnitsOf(4, 0, document)},
        {"two marks", "\xEF\xBB\xBF\xEF\xBB\xBF" + document},
        {"part of a mark", "\xEF\xBB" + document},
        {"a NUL in front", '\0' + document},
        {"a mark of the wrong order", "\xFE\xFF" + inUnitsOf(2, 0, document)},
    };
    for (const auto& [name, bytes] : refused) {
        EXPECT_FALSE(decodeGuardedReplacementRequest(bytes)) << name;
    }
}

TEST(GuardedReplacementRequest, IsRefusedIfNestedTooDeeply) {
    const std::string document = completeDocument();
    const auto with = [&document](std::size_t depth) {
        return "{\"other\":" + std::string(depth, '[') + std::string(depth, ']') + "," + document.substr(1);
    };
    EXPECT_EQ(decodeGuardedReplacementRequest(with(511)), fullRequest());
    EXPECT_FALSE(decodeGuardedReplacementRequest(with(512)));
    EXPECT_FALSE(decodeGuardedReplacementRequest(with(100000)));
    EXPECT_FALSE(decodeGuardedReplacementRequest(std::string(100000, '[')));
}

TEST(GuardedReplacementRequest, SurvivesARoundTrip) {
    constexpr std::uint32_t greatest = std::numeric_limits<std::uint32_t>::max();
    GuardedReplacementRequest request = fullRequest();
    request.expectedText = u"\"a/b\"\\\n\u0001\u00E9\u20AC\U0001F600";
    request.expectedBundleIdentifier.reset();
    request.expectedProcessIdentifier = std::numeric_limits<ProcessIdentifier>::min();
    request.expectedSelectedRange =
        SelectionRangePayload{std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()};
    request.expectedInputActivity = {greatest, greatest, greatest, greatest};
    for (const auto slashes : {SlashEscaping::escaped, SlashEscaping::unescaped}) {
        EXPECT_EQ(decodeGuardedReplacementRequest(encodeJson(request, slashes)), request);
    }
}

TEST(GuardedReplacementRequest, EncodesHalfASurrogatePairAsReplacementCharacter) {
    GuardedReplacementRequest request = fullRequest();
    request.expectedText = u"a" + Text(1, char16_t{0xD83D}) + u"b" + Text(1, char16_t{0xDE00});
    const auto decoded = decodeGuardedReplacementRequest(encodeJson(request, SlashEscaping::unescaped));
    request.expectedText = u"a\uFFFDb\uFFFD";
    EXPECT_EQ(decoded, request);
}

TEST(GuardedReplacementRequest, IsWrittenWithSortedKeys) {
    EXPECT_EQ(encodeJson(fullRequest(), SlashEscaping::unescaped),
              "{\n"
              "  \"expectedBundleIdentifier\" : \"com.example.notes\",\n"
              "  \"expectedInputActivity\" : {\n"
              "    \"keyDownCount\" : 1532,\n"
              "    \"leftMouseDownCount\" : 210,\n"
              "    \"otherMouseDownCount\" : 0,\n"
              "    \"rightMouseDownCount\" : 4\n"
              "  },\n"
              "  \"expectedProcessIdentifier\" : 812,\n"
              "  \"expectedSelectedRange\" : {\n"
              "    \"length\" : 9,\n"
              "    \"location\" : 10\n"
              "  },\n"
              "  \"expectedText\" : \"brown fox\",\n"
              "  \"replacementText\" : \"red fox\"\n"
              "}");
}

}  // namespace
}  // namespace lomaris
