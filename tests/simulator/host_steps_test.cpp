// The steps of a host and their output.

#include "simulator/host_steps.h"
#include "simulator/file_error.h"
#include "tests/simulator/described_desktop.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using simulator::FileError;
using simulator::Json;
using simulator::JsonNode;
using simulator::Stage;

/// Returns the error message for steps. Empty if there is none.
std::string errorFor(const std::string& contents) {
    try {
        Stage stage;
        const Json file = simulator::parseJson(contents);
        static_cast<void>(simulator::readHostSteps(JsonNode(file), stage));
        return "";
    } catch (const FileError& error) {
        return error.what();
    }
}

/// Returns the output of the steps, one JSON object each.
std::vector<Json> linesOf(const std::string& desktop, const std::string& steps) {
    const auto stage = stageOf(desktop);
    const Json file = simulator::parseJson(steps);
    std::vector<Json> lines;
    for (const simulator::HostStep& step : simulator::readHostSteps(JsonNode(file), *stage)) {
        lines.push_back(step());
    }
    return lines;
}

TEST(HostSteps, WaitWithoutRunningTheRunLoop) {
    const std::string desktop = R"({"applications": [{"processIdentifier": 812, "front": true,
        "onCopy": {"copies": "fox"}, "onPaste": {"types": 1}}],
        "pasteboard": {"items": [{"public.utf8-plain-text": "the user's"}]}})";
    const auto pasteboardAfter = [&desktop](const std::string& step) {
        const std::vector<Json> lines = linesOf(desktop, R"([{"replace": "cat"}, )" + step + R"(, {"look": true}])");
        EXPECT_EQ(lines[0].at("replace"), "replaced");
        return std::pair(lines[1], lines[2].at("look").at("pasteboard")[0].at("public.utf8-plain-text"));
    };
    const auto [waited, during] = pasteboardAfter(R"({"waits": 3})");
    EXPECT_EQ(waited.at("waits"), "waited");
    EXPECT_EQ(during, Json({{"promised", true}}));
    const auto [ran, restored] = pasteboardAfter(R"({"runMainQueue": 3})");
    EXPECT_EQ(ran.at("runMainQueue"), "ran");
    EXPECT_EQ(restored, Json({{"text", "the user's"}}));
    EXPECT_EQ(waited.at("virtualSeconds"), ran.at("virtualSeconds"));
}

TEST(HostSteps, CallTheServiceWithoutASession) {
    const std::string desktop = R"({"applications": [{"processIdentifier": 812, "front": true, "name": "Notes",
        "attributes": {"AXFocusedUIElement": {"element": "editor"}, "AXFocusedWindow": {"element": "editor"}},
        "elements": [{"name": "editor", "text": {"value": "one two six", "selection": [4, 3]}}]}]})";
    const std::vector<Json> lines = linesOf(desktop, R"([
        {"read": "text"},
        {"read": "json", "beforeLimit": 2, "afterLimit": 0},
        {"diagnose": "compatibility"},
        {"replace": "four"},
        {"replace": ""},
        {"replaceByRequest": "no request"},
        {"diagnose": "selection"},
        {"user": {"setsTrusted": false}},
        {"read": "text"},
        {"look": true}])");
    EXPECT_EQ(lines[0].at("read"), "two");
    EXPECT_EQ(lines[1].at("read").at("selectedText"), "two");
    EXPECT_EQ(lines[1].at("read").at("contextBefore"), "e ");
    EXPECT_EQ(lines[1].at("read").at("contextAfter"), "");
    EXPECT_EQ(lines[2].at("diagnose").at("selectionLength"), 3);
    EXPECT_EQ(lines[3].at("replace"), "replaced");
    EXPECT_EQ(lines[4].at("replace").at("error"), "invalidInput");
    EXPECT_EQ(lines[5].at("replaceByRequest").at("error"), "invalidInput");
    ASSERT_EQ(lines[6].at("diagnose").at("relevantNodes").size(), 1U);
    EXPECT_EQ(lines[6].at("diagnose").at("relevantNodes")[0].at("role"), "AXTextArea");
    EXPECT_EQ(lines[8].at("read").at("error"), "accessibilityPermissionRequired");
    EXPECT_EQ(lines[9].at("look").at("texts").at("editor").at("value"), "one four six");
}

TEST(HostSteps, AreRefusedBeforeAnyIsRun) {
    const std::string steps =
        "expected an object with exactly one of the keys capture, markSubmitted, replaceIfCurrent, drop, read, "
        "replace, replaceByRequest, diagnose, permission, runMainQueue, waits, user, traces, look";
    const std::vector<std::pair<std::string, std::string>> refusals{
        {"{}", "expected an array"},
        {R"([{"capture": "selection"}, {"wait": 1}])", "[1]: " + steps},
        {R"([5])", "[0]: " + steps},
        {R"([{"user": [{"types": 1}], "look": true}])", "[0]: " + steps},
        {R"([{"read": "words"}])", "[0].read: expected \"text\" or \"json\""},
        {R"([{"replace": 5}])", "[0].replace: expected a string or an array of UTF-16 units"},
        {R"([{"replace": "a", "afterLimit": -2}])", "[0].afterLimit: expected an integer from -1 to 1000000000"},
        {R"([{"replaceByRequest": {}}])",
         "[0].replaceByRequest: expected a string or an object with exactly one of the keys text, base64"},
        {R"([{"diagnose": true}])", "[0].diagnose: expected \"selection\" or \"compatibility\""},
        {R"([{"waits": -1}])", "[0].waits: expected a number of seconds from 0 to 1000000"},
        {R"([{"user": {"clicks": "middle"}}])", "[0].user.clicks: expected \"left\", \"right\" or \"other\""},
        {R"([{"capture": "all"}])", "[0].capture: expected \"selection\" or \"selectionOrChat\""},
        {R"([{"capture": "selection", "limit": 1}])",
         "[0].limit: unknown key; expected one of: capture, as, beforeLimit, afterLimit, fallback"},
        {R"([{"markSubmitted": "session"}])",
         "[0].markSubmitted: expected the name of a session that an earlier step captures"},
        {R"([{"capture": "selection", "as": "a"}, {"replaceIfCurrent": "a"}])",
         "[1]: expected an object with the key \"with\""},
        {R"([{"traces": "erase"}])", "[0].traces: expected \"snapshot\" or \"reset\""},
        {R"([{"permission": "grant"}])", "[0].permission: expected \"check\" or \"ask\""},
        {R"([{"runMainQueue": "long"}])", "[0].runMainQueue: expected a number of seconds from 0 to 1000000"},
    };
    for (const auto& [contents, message] : refusals) {
        EXPECT_EQ(errorFor(contents), message) << contents;
    }
}

}  // namespace
}  // namespace lomaris::test
