#include "tests/install/running_host.h"
#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>

#include <string>

namespace lomaris::test {
namespace {

/// Contains the words twice, so that only their positions differ.
const std::string document = "A brown fox\nmet another brown fox.\n";
const std::string words = "brown fox";

const std::string captured =
    "applicationName=Mousepad\n"
    "selectedText=brown fox\n"
    "contextBefore=A \n"
    "contextAfter=\\nmet another brown fox.\\n\n"
    "selectionMethod=accessibility\n"
    "usesClipboardFallback=no\n";

class HostInEditor : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(mousepad()); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }
};

TEST_F(HostInEditor, ReplacesTheCapturedSelection) {
    Editor editor(mousepad(), document);
    editor.mark(2, 9, words);
    const UserClipboard clipboard;
    EXPECT_EQ(RunningHost({"red \U0001F98A"}).submit(),
              (ProcessResult{0, captured + traces({1, 0, 0, 0, 0, 0}, {0, 0, 0, 0}), ""}));
    EXPECT_TRUE(UserClipboard::isIntact());
    EXPECT_TRUE(documentBecomes("A red \U0001F98A\nmet another brown fox.\n")) << markedText().value_or("nothing");
}

TEST_F(HostInEditor, ReplacesByTheShortcutWithoutTheClipboard) {
    Editor editor(mousepad(), document);
    editor.mark(2, 9, words);
    EXPECT_EQ(RunningHost({"--chat", "--no-clipboard", "red fox"}).submit(),
              (ProcessResult{0, captured + traces({1, 0, 0, 0, 0, 0}, {0, 0, 0, 0}), ""}));
    EXPECT_TRUE(documentBecomes("A red fox\nmet another brown fox.\n")) << markedText().value_or("nothing");
}

TEST_F(HostInEditor, WritesNothingIfTheSelectionHasMoved) {
    Editor editor(mousepad(), document);
    editor.mark(2, 9, words);
    const UserClipboard clipboard;
    RunningHost host({"never"});
    // Selects something else in between, because the two occurrences have the same text.
    editor.mark(0, 1, "A");
    editor.mark(24, 9, words);
    EXPECT_EQ(host.submit(),
              (ProcessResult{1, captured + traces({1, 0, 0, 0, 0, 0}, {5, 0, 0, 0}), selectionChangedLine}));
    EXPECT_TRUE(UserClipboard::isIntact());
    EXPECT_TRUE(documentBecomes(document)) << markedText().value_or("nothing");
}

}  // namespace
}  // namespace lomaris::test
