#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/support/process.h"
#include "tests/support/waiting.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <ostream>
#include <string>
#include <thread>

namespace lomaris::test {
namespace {

using nlohmann::json;

/// One emoji before the selected words: 1 character and 1 code point for the editors, 2 units for the tool.
const std::string document = "Hello \U0001F44B quick brown fox jumps\nover the lazy dog";
constexpr int stepsToTheWords = 8;
const std::string words = "quick brown";
/// The result if the editor has nothing to copy, or hangs: it does not change the clipboard in any attempt.
const ProcessResult nothingCopied{1, "",
                                  "Lomaris macOS bridge: Keyboard/clipboard fallback failed: the target application "
                                  "did not respond to Cmd+C after 3 attempt(s)\n"};

void markTheWords(Editor& editor) { editor.mark(stepsToTheWords, static_cast<int>(words.size()), words); }

struct EditorCase {
    EditorProgram program;
    json applicationName;
    /// Null if the application has none.
    json bundleIdentifier;

    friend std::ostream& operator<<(std::ostream& stream, const EditorCase& tested) {
        return stream << tested.program.name;
    }
};

class ReadSelection : public testing::TestWithParam<EditorCase> {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(GetParam().program); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }
};

/// The current counters of this platform. There is no input during a test.
json currentInputActivity() {
    const auto platform = nativePlatform();
    const std::uint32_t counter = platform->events().inputCounter(InputEventType::keyDown);
    return {{"keyDownCount", counter},
            {"leftMouseDownCount", counter},
            {"rightMouseDownCount", counter},
            {"otherMouseDownCount", counter}};
}

TEST_P(ReadSelection, ReturnsTextRangeContextAndApplication) {
    Editor editor(GetParam().program, document);
    markTheWords(editor);
    const ProcessResult result = runTool({"read-selection", "--json"});
    ASSERT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(result.error, "");
    json expected = {
        {"applicationName", GetParam().applicationName},
        {"processIdentifier", editor.processIdentifier()},
        {"selectedText", words},
        {"contextBefore", "Hello \U0001F44B "},
        {"contextAfter", " fox jumps\nover the lazy dog"},
        {"selectedRange", {{"location", 9}, {"length", 11}}},
        {"inputActivity", currentInputActivity()},
        {"supportsDirectReplacement", true},
        {"selectionMethod", "accessibility"},
    };
    if (!GetParam().bundleIdentifier.is_null()) {
        expected["bundleIdentifier"] = GetParam().bundleIdentifier;
    }
    EXPECT_EQ(json::parse(result.output), expected);
}

TEST_P(ReadSelection, LimitsTheContext) {
    Editor editor(GetParam().program, document);
    markTheWords(editor);
    const ProcessResult result = runTool({"read-selection", "--json", "--before-chars", "4", "--after-chars", "4"});
    ASSERT_EQ(result.status, 0) << result.error;
    const json selection = json::parse(result.output);
    EXPECT_EQ(selection["contextBefore"], " \U0001F44B ");
    EXPECT_EQ(selection["contextAfter"], " fox");
}

TEST_P(ReadSelection, PrintsThePlainText) {
    Editor editor(GetParam().program, document);
    markTheWords(editor);
    EXPECT_EQ(runTool({"read-selection"}), (ProcessResult{0, words + "\n", ""}));
}

TEST_P(ReadSelection, ReadsTheWholeDocument) {
    Editor editor(GetParam().program, document);
    markTheWords(editor);
    pressKeys({"ctrl+Home", "ctrl+shift+End"});
    ASSERT_TRUE(waitFor([] { return markedText() == document; }));
    EXPECT_EQ(runTool({"read-selection"}), (ProcessResult{0, document + "\n", ""}));
}

TEST_P(ReadSelection, ReportsAnErrorIfNothingIsSelected) {
    Editor editor(GetParam().program, document);
    markTheWords(editor);
    const UserClipboard clipboard;
    pressKeys({"ctrl+Home"});
    // The end of a selection cannot be detected otherwise: the PRIMARY selection remains.
    ProcessResult result;
    ASSERT_TRUE(waitFor([&result] {
        result = runTool({"read-selection", "--json"});
        return result.status != 0;
    }));
    EXPECT_EQ(result, nothingCopied) << result.error;
    EXPECT_TRUE(UserClipboard::isIntact());
}

TEST_P(ReadSelection, ReportsAHungApplication) {
    Editor editor(GetParam().program, document);
    markTheWords(editor);
    const UserClipboard clipboard;
    editor.process().freeze();
    const ProcessResult result = runTool({"read-selection"});
    EXPECT_EQ(result, nothingCopied) << result.error;
    EXPECT_TRUE(UserClipboard::isIntact());
}

TEST_P(ReadSelection, SurvivesAnApplicationThatIsKilled) {
    for (const int milliseconds : {0, 1, 2, 4, 6, 8, 12}) {
        Editor editor(GetParam().program, document);
        markTheWords(editor);
        std::thread killer([&editor, milliseconds] {
            std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
            editor.process().end();
        });
        const ProcessResult result = runTool({"read-selection"});
        killer.join();
        if (result.status == 0) {
            EXPECT_EQ(result, (ProcessResult{0, words + "\n", ""}));
            continue;
        }
        EXPECT_EQ(result.status, 1) << milliseconds;
        EXPECT_EQ(result.output, "") << milliseconds;
        EXPECT_EQ(result.error.rfind("Lomaris macOS bridge: ", 0), 0U) << result.error;
        EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
    }
}

TEST_P(ReadSelection, ReportsAnOutputThatCannotBeWritten) {
    Editor editor(GetParam().program, document);
    markTheWords(editor);
    const ProcessResult expected{1, "", "Lomaris macOS bridge: Could not write to standard output.\n"};
    ProcessOptions full;
    full.outputFile = "/dev/full";
    EXPECT_EQ(runTool({"read-selection"}, full), expected);
    ProcessOptions closed;
    closed.closedDescriptors = {1};
    EXPECT_EQ(runTool({"read-selection", "--json"}, closed), expected);
    ProcessOptions unread;
    unread.readerGoesAway = true;
    EXPECT_EQ(runTool({"read-selection", "--json"}, unread), expected);
}

constexpr auto nameOfEditor = [](const auto& tested) { return tested.param.program.name; };

INSTANTIATE_TEST_SUITE_P(Real, ReadSelection,
                         testing::Values(EditorCase{mousepad(), "Mousepad", "org.xfce.mousepad"},
                                         EditorCase{featherPad(), "FeatherPad", nullptr}),
                         nameOfEditor);

}  // namespace
}  // namespace lomaris::test
