#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/support/process.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace lomaris::test {
namespace {

class KeyEditor : public testing::TestWithParam<EditorProgram> {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(GetParam()); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }

    void post(KeyStroke keyStroke) {
        const auto created = platform_->events().createKeyStroke(keyStroke);
        ASSERT_NE(created, nullptr);
        platform_->events().postToSession(*created);
    }

    /// Waits until the clipboard has this text. Returns false after a timeout.
    static bool clipboardComesToHold(const std::string& text) {
        return waitFor([&text] { return runProcess({"xclip", "-out", "-selection", "clipboard"}).output == text; });
    }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

TEST_P(KeyEditor, CopiesDeletesAndPastesByPostedKeys) {
    Editor editor(GetParam(), "The quick brown fox");
    editor.mark(4, 5, "quick");
    post({8, commandFlag});
    EXPECT_TRUE(clipboardComesToHold("quick"));
    post({51, 0});
    post({9, commandFlag});
    post({9, commandFlag});
    pressKeys({"ctrl+Home", "ctrl+shift+End", "ctrl+c"});
    EXPECT_TRUE(clipboardComesToHold("The quickquick brown fox"));
}

INSTANTIATE_TEST_SUITE_P(Real, KeyEditor, testing::Values(mousepad(), featherPad()),
                         [](const auto& instance) { return instance.param.name; });

}  // namespace
}  // namespace lomaris::test
