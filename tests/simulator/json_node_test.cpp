#include "simulator/json_node.h"
#include "simulator/file_error.h"
#include "simulator/json_file.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::simulator {
namespace {

/// Returns the error message for a value. Empty if there is none.
std::string errorFor(const std::string& contents, const std::function<void(const JsonNode&)>& use) {
    try {
        const Json value = parseJson(contents);
        use(JsonNode(value, "here"));
        return "";
    } catch (const FileError& error) {
        return error.what();
    }
}

TEST(JsonNode, RefusesMembersOfOtherTypesThanObjects) {
    for (const std::string contents : {"5", "[]", "null", "\"text\""}) {
        EXPECT_EQ(errorFor(contents, [](const JsonNode& node) { static_cast<void>(node.find("key")); }),
                  "here: expected an object")
            << contents;
        EXPECT_EQ(errorFor(contents, [](const JsonNode& node) { static_cast<void>(node.get("key")); }),
                  "here: expected an object")
            << contents;
        EXPECT_EQ(errorFor(contents, [](const JsonNode& node) { static_cast<void>(node.entries()); }),
                  "here: expected an object")
            << contents;
        EXPECT_EQ(errorFor(contents, [](const JsonNode& node) { node.allowKeys({"key"}); }), "here: expected an object")
            << contents;
    }
}

TEST(JsonNode, HasNoTextForNull) {
    const Json null = parseJson("null");
    EXPECT_EQ(JsonNode(null).textOrNull(), std::nullopt);
    const Json text = parseJson("\"text\"");
    EXPECT_EQ(JsonNode(text).textOrNull(), Text(u"text"));
}

TEST(JsonNode, RefusesAMissingKey) {
    EXPECT_EQ(errorFor("{}", [](const JsonNode& node) { static_cast<void>(node.get("key")); }),
              "here: expected an object with the key \"key\"");
    EXPECT_EQ(errorFor("{}", [](const JsonNode& node) { EXPECT_FALSE(node.find("key")); }), "");
}

}  // namespace
}  // namespace lomaris::simulator
