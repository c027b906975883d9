#include "tests/real/browser.h"

#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/support/process.h"
#include "tests/support/running_program.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <string>

namespace lomaris::test {
namespace {

using nlohmann::json;

/// One browser for all its tests, as it starts slowly.
class BrowserSelection : public testing::Test {
protected:
    static void SetUpTestSuite() {
        missing_ = missingPrograms({"firefox-esr", "xdotool"});
        if (missing_.empty()) {
            browser_ = std::make_unique<Browser>();
        }
    }
    static void TearDownTestSuite() { browser_.reset(); }

    void SetUp() override {
        if (!missing_.empty()) {
            GTEST_SKIP() << missing_;
        }
        browser_->reset();
    }

    static Browser& browser() { return *browser_; }

    /// Replaces, and expects this document with the caret after the replacement.
    static void expectReplacement(const std::string& replacement, const std::string& document,
                                  const std::string& range) {
        const UserClipboard clipboard;
        EXPECT_EQ(runTool({"replace-selection", "--replacement", replacement}), (ProcessResult{0, "replaced\n", ""}));
        EXPECT_TRUE(Browser::comesToShow(document, range)) << titleInFront();
        // The tool has ended. Another program that pastes still gets the replacement.
        EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, replacement}));
    }

private:
    static inline std::string missing_;
    static inline std::unique_ptr<Browser> browser_;
};

TEST_F(BrowserSelection, IsReadByACopyThatRestoresTheClipboard) {
    const UserClipboard clipboard;
    const ProcessResult result = runTool({"read-selection", "--json"});
    ASSERT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(result.error, "");
    const std::uint32_t counter = nativePlatform()->events().inputCounter(InputEventType::keyDown);
    EXPECT_EQ(json::parse(result.output), (json{{"applicationName", "Firefox ESR"},
                                                {"bundleIdentifier", "org.mozilla.firefox"},
                                                {"processIdentifier", browser().processIdentifier()},
                                                {"selectedText", Browser::selection},
                                                {"contextBefore", ""},
                                                {"contextAfter", ""},
                                                {"inputActivity",
                                                 {{"keyDownCount", counter},
                                                  {"leftMouseDownCount", counter},
                                                  {"rightMouseDownCount", counter},
                                                  {"otherMouseDownCount", counter}}},
                                                {"supportsDirectReplacement", false},
                                                {"selectionMethod", "keyboardClipboardFallback"}}));
    EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
    EXPECT_TRUE(Browser::comesToShow(Browser::document, "10-19")) << titleInFront();
}

TEST_F(BrowserSelection, IsPrintedAsPlainText) {
    const UserClipboard clipboard;
    EXPECT_EQ(runTool({"read-selection"}), (ProcessResult{0, std::string(Browser::selection) + "\n", ""}));
    EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
}

TEST_F(BrowserSelection, IsReplacedByPastedWords) {
    expectReplacement("red \U0001F98A fox", "The quick red \U0001F98A fox jumps", "20-20");
}

TEST_F(BrowserSelection, IsReplacedByAWebAddress) {
    expectReplacement("https://example.org/fox", "The quick https://example.org/fox jumps", "33-33");
}

TEST_F(BrowserSelection, DoesNotOverwriteACopyAfterThePaste) {
    expectReplacement("red fox", "The quick red fox jumps", "17-17");
    const OtherOwner later({{"UTF8_STRING", {"", 8, "copied later"}}});
    EXPECT_EQ(clipboardContents(),
              (ClipboardContents{{"UTF8_STRING", PropertyValue{"UTF8_STRING", 8, "copied later"}}}));
}

}  // namespace
}  // namespace lomaris::test
