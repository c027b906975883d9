// The tool on a real document, from the command line to the resulting text.

#include "platform/native_platform.h"
#include "tests/macos_native/kept_clipboard.h"
#include "tests/macos_native/other_program.h"
#include "tests/macos_native/text_edit.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace lomaris::test {
namespace {

class ToolOnTextEdit : public testing::Test {
protected:
    void SetUp() override {
        if (const auto missing = missingForTextEdit(*platform_); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
        editor_ = std::make_unique<TextEdit>(*platform_, "The quick brown fox jumps.");
        editor_->select({10, 9});
    }

    TextEdit& editor() { return *editor_; }

private:
    KeptClipboard clipboard_;
    std::unique_ptr<Platform> platform_ = nativePlatform();
    std::unique_ptr<TextEdit> editor_;
};

TEST_F(ToolOnTextEdit, SaysThatThePermissionIsGranted) {
    EXPECT_EQ(runTool({"permission-status"}), (ProcessResult{0, "granted\n", ""}));
}

TEST_F(ToolOnTextEdit, ReadsTheSelection) {
    EXPECT_EQ(runTool({"read-selection"}), (ProcessResult{0, "brown fox\n", ""}));
}

TEST_F(ToolOnTextEdit, ReplacesTheSelectionAndNothingElse) {
    EXPECT_EQ(runTool({"replace-selection", "--replacement", "red fox"}), (ProcessResult{0, "replaced\n", ""}));
    EXPECT_EQ(editor().contents(), Text(u"The quick red fox jumps."));
}

TEST_F(ToolOnTextEdit, LeavesTheClipboardAlone) {
    other_program::copy({{PasteboardType(pasteboard_type::string), "mine"}});
    EXPECT_EQ(runTool({"read-selection"}).status, 0);
    EXPECT_EQ(other_program::read(PasteboardType(pasteboard_type::string)), Bytes("mine"));
}

TEST(Tool, StartsWithoutAnyPermission) {
    const ProcessResult result = runTool({"--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output, "");
}

}  // namespace
}  // namespace lomaris::test
