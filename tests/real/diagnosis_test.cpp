#include "tests/real/browser_suite.h"
#include "tests/real/editor.h"
#include "tests/real/guarded_request.h"
#include "tests/support/process.h"
#include "tests/support/waiting.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace lomaris::test {
namespace {

using nlohmann::json;

/// The output of a command, which must be JSON.
json answerOf(const std::string& command) {
    const ProcessResult result = runTool({command});
    if (result.status != 0 || !result.error.empty()) {
        throw std::runtime_error(testing::PrintToString(result));
    }
    return json::parse(result.output);
}

/// The nodes that are reported as focused, without their paths and depths.
std::vector<json> focusedNodes(const json& diagnosis) {
    std::vector<json> nodes;
    for (json node : diagnosis.at("relevantNodes")) {
        if (node.at("focused") == true) {
            node.erase("path");
            node.erase("depth");
            nodes.push_back(std::move(node));
        }
    }
    return nodes;
}

/// True if each path has as many steps as its depth says, and all paths are different.
bool pathsAreSound(const json& diagnosis) {
    std::vector<std::string> paths;
    for (const json& node : diagnosis.at("relevantNodes")) {
        const auto path = node.at("path").get<std::string>();
        if (std::count(path.begin(), path.end(), '.') != node.at("depth")) {
            return false;
        }
        paths.push_back(path);
    }
    std::sort(paths.begin(), paths.end());
    return std::adjacent_find(paths.begin(), paths.end()) == paths.end();
}

class EditorDiagnosis : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(mousepad()); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }
};

TEST_F(EditorDiagnosis, ReportsTheTextAndChangesNothing) {
    const std::string document = "Hello \U0001F44B quick brown fox jumps\nover the lazy dog";
    Editor editor(mousepad(), document);
    editor.mark(6, 7, "\U0001F44B quick");
    const json selection = readSelection();
    const UserClipboard clipboard;
    const json diagnosis = answerOf("diagnose-selection");

    EXPECT_EQ(diagnosis["applicationName"], "Mousepad");
    EXPECT_EQ(diagnosis["bundleIdentifier"], "org.xfce.mousepad");
    EXPECT_EQ(diagnosis["processIdentifier"], editor.processIdentifier());
    EXPECT_GT(diagnosis["scannedNodeCount"], 10);
    EXPECT_EQ(diagnosis["truncated"], false);
    EXPECT_EQ(focusedNodes(diagnosis), std::vector<json>({{{"role", "AXTextArea"},
                                                           {"focused", true},
                                                           {"selectedTextStatus", 0},
                                                           {"selectedTextLength", 8},
                                                           {"selectedRange", {{"location", 6}, {"length", 8}}},
                                                           {"valueLength", 48},
                                                           {"selectedTextSettable", true},
                                                           {"childCount", 0}}}));
    EXPECT_TRUE(pathsAreSound(diagnosis)) << diagnosis;

    EXPECT_TRUE(UserClipboard::isIntact());
    EXPECT_EQ(readSelection(), selection);
    EXPECT_TRUE(documentBecomes(document)) << markedText().value_or("nothing");
}

TEST_F(EditorDiagnosis, WaitsOnceForAHungApplication) {
    Editor editor(mousepad(), "text");
    editor.mark(0, 4, "text");
    editor.process().freeze();
    const auto start = std::chrono::steady_clock::now();
    const json diagnosis = answerOf("diagnose-selection");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_EQ(diagnosis, (json{{"applicationName", "Mousepad"},
                               {"bundleIdentifier", "org.xfce.mousepad"},
                               {"processIdentifier", editor.processIdentifier()},
                               {"relevantNodes", json::array()},
                               {"scannedNodeCount", 1},
                               {"truncated", false}}));
}

TEST_F(EditorDiagnosis, WaitsOnceForAnApplicationThatHangsLater) {
    for (const int milliseconds : {10, 20, 40}) {
        Editor editor(mousepad(), "text");
        editor.mark(0, 4, "text");
        std::jthread hand([&editor, milliseconds] {
            std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
            editor.process().freeze();
        });
        const auto start = std::chrono::steady_clock::now();
        const ProcessResult result = runTool({"diagnose-selection"});
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2)) << milliseconds;
        hand.join();
        EXPECT_EQ(result.status, 0) << result.error;
    }
}

/// 7 characters of 9 units before the selection, 7 of 17 in it, 4 of 5 after it.
const std::string documentOfClusters =
    "cafe\u0301 \U0001F44B quick \U0001F469\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466 o\u0308 z";

TEST_F(EditorDiagnosis, CountsCharactersInTheCompatibilityCheck) {
    Editor editor(mousepad(), documentOfClusters);
    editor.mark(7, 7, "quick \U0001F469\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466");
    const UserClipboard clipboard;
    EXPECT_EQ(answerOf("compatibility-check"), (json{{"schemaVersion", 1},
                                                     {"applicationName", "Mousepad"},
                                                     {"bundleIdentifier", "org.xfce.mousepad"},
                                                     {"selectionReadable", true},
                                                     {"selectionLength", 7},
                                                     {"selectionMethod", "accessibility"},
                                                     {"usesClipboardFallback", false},
                                                     {"supportsDirectReplacement", true},
                                                     {"contextBeforeLength", 7},
                                                     {"contextAfterLength", 4}}));
    EXPECT_TRUE(UserClipboard::isIntact());
    EXPECT_TRUE(documentBecomes(documentOfClusters)) << markedText().value_or("nothing");
}

TEST_F(EditorDiagnosis, FailsTheCompatibilityCheckWithoutAText) {
    Editor editor(mousepad(), "");
    const UserClipboard clipboard;
    const ProcessResult result = runTool({"compatibility-check"});
    EXPECT_EQ(result, (ProcessResult{1, "",
                                     "Lomaris macOS bridge: Keyboard/clipboard fallback failed: the target application "
                                     "did not respond to Cmd+C after 3 attempt(s)\n"}));
    EXPECT_TRUE(UserClipboard::isIntact());
}

using BrowserDiagnosis = BrowserSuite;

TEST_F(BrowserDiagnosis, ReportsTheTextOfThePageAndChangesNothing) {
    const UserClipboard clipboard;
    const auto start = std::chrono::steady_clock::now();
    const json diagnosis = answerOf("diagnose-selection");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));

    EXPECT_EQ(diagnosis["applicationName"], "Firefox ESR");
    EXPECT_EQ(diagnosis["bundleIdentifier"], "org.mozilla.firefox");
    EXPECT_EQ(diagnosis["processIdentifier"], browser().processIdentifier());
    EXPECT_GT(diagnosis["scannedNodeCount"], 10);
    EXPECT_EQ(diagnosis["truncated"], false);
    EXPECT_EQ(focusedNodes(diagnosis), std::vector<json>({{{"role", "AXTextArea"},
                                                           {"focused", true},
                                                           {"selectedTextStatus", 0},
                                                           {"selectedTextLength", 9},
                                                           {"selectedRange", {{"location", 10}, {"length", 9}}},
                                                           {"valueLength", 25},
                                                           {"selectedTextSettable", false},
                                                           {"childCount", 0}}}));
    EXPECT_TRUE(pathsAreSound(diagnosis)) << diagnosis;

    EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
    EXPECT_TRUE(Browser::comesToShow(Browser::document, "10-19")) << titleInFront();
}

TEST_F(BrowserDiagnosis, ReportsThatTheSelectionIsCopied) {
    const UserClipboard clipboard;
    EXPECT_EQ(answerOf("compatibility-check"), (json{{"schemaVersion", 1},
                                                     {"applicationName", "Firefox ESR"},
                                                     {"bundleIdentifier", "org.mozilla.firefox"},
                                                     {"selectionReadable", true},
                                                     {"selectionLength", 9},
                                                     {"selectionMethod", "keyboardClipboardFallback"},
                                                     {"usesClipboardFallback", true},
                                                     {"supportsDirectReplacement", false},
                                                     {"contextBeforeLength", 0},
                                                     {"contextAfterLength", 0}}));
    EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
    EXPECT_TRUE(Browser::comesToShow(Browser::document, "10-19")) << titleInFront();
}

}  // namespace
}  // namespace lomaris::test
