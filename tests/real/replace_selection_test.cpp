#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/support/process.h"
#include "tests/support/waiting.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>

#include <string>

namespace lomaris::test {
namespace {

/// One emoji before the selected words: 1 character and 1 code point for the editors, 2 units for the tool.
const std::string document = "Hello \U0001F44B quick brown fox jumps\nover the lazy dog";
const std::string words = "quick brown";
const ProcessResult replaced{0, "replaced\n", ""};
const ProcessResult nothingCopied{1, "",
                                  "Lomaris macOS bridge: Keyboard/clipboard fallback failed: the target application "
                                  "did not respond to Cmd+C after 3 attempt(s)\n"};

class ReplaceSelection : public testing::TestWithParam<EditorProgram> {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(GetParam()); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }

    static void markTheWords(Editor& editor) { editor.mark(8, static_cast<int>(words.size()), words); }

    /// Waits until the document in front is this text. Returns false after a timeout.
    static bool documentBecomes(const std::string& text) {
        return waitFor([&text] {
            pressKeys({"ctrl+Home", "ctrl+shift+End"});
            return markedText() == text;
        });
    }
};

/// The text of the document after `documentBecomes` has failed.
std::string shown() { return markedText().value_or("nothing"); }

TEST_P(ReplaceSelection, WritesTheTextOfTheArgument) {
    Editor editor(GetParam(), document);
    markTheWords(editor);
    const UserClipboard clipboard;
    EXPECT_EQ(runTool({"replace-selection", "--replacement", "slow caf\u00e9 red"}), replaced);
    EXPECT_TRUE(UserClipboard::isIntact());
    EXPECT_TRUE(documentBecomes("Hello \U0001F44B slow caf\u00e9 red fox jumps\nover the lazy dog")) << shown();
}

TEST_P(ReplaceSelection, WritesTheTextOfItsStandardInput) {
    Editor editor(GetParam(), document);
    markTheWords(editor);
    ProcessOptions options;
    options.input = "\U0001F98A\U0001F1E9\U0001F1EA two\nlines\n";
    EXPECT_EQ(runTool({"replace-selection"}, options), replaced);
    EXPECT_TRUE(
        documentBecomes("Hello \U0001F44B \U0001F98A\U0001F1E9\U0001F1EA two\nlines\n fox jumps\n"
                        "over the lazy dog"))
        << shown();
}

TEST_P(ReplaceSelection, ChangesNothingIfNothingIsSelected) {
    Editor editor(GetParam(), document);
    markTheWords(editor);
    const UserClipboard clipboard;
    // The end of a selection cannot be detected otherwise: the tool reads the words until then.
    pressKeys({"ctrl+Home"});
    ASSERT_TRUE(waitFor([] { return runTool({"read-selection"}).status != 0; }));
    const ProcessResult result = runTool({"replace-selection", "--replacement", "never"});
    EXPECT_EQ(result, nothingCopied) << result.error;
    EXPECT_TRUE(UserClipboard::isIntact());
    EXPECT_TRUE(documentBecomes(document)) << shown();
}

TEST_P(ReplaceSelection, KeepsTheClipboardIfTheApplicationHangs) {
    Editor editor(GetParam(), document);
    markTheWords(editor);
    const UserClipboard clipboard;
    editor.process().freeze();
    const ProcessResult result = runTool({"replace-selection", "--replacement", "never"});
    EXPECT_EQ(result, nothingCopied) << result.error;
    EXPECT_TRUE(UserClipboard::isIntact());
}

INSTANTIATE_TEST_SUITE_P(Real, ReplaceSelection, testing::Values(mousepad(), featherPad()),
                         [](const auto& instance) { return instance.param.name; });

}  // namespace
}  // namespace lomaris::test
