#include "tests/install/running_host.h"
#include "tests/real/browser_suite.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace lomaris::test {
namespace {

const std::string captured =
    "applicationName=Firefox ESR\n"
    "selectedText=brown fox\n"
    "contextBefore=\n"
    "contextAfter=\n"
    "selectionMethod=keyboardClipboardFallback\n"
    "usesClipboardFallback=yes\n";

class HostInBrowser : public BrowserSuite {};

/// Returns how often the host pressed Command+C for its two reads. With a slow browser a read needs several attempts.
int keyPresses(const ProcessResult& result) {
    const std::string name = "capture.key_presses=";
    const auto at = result.output.find(name);
    return at != std::string::npos ? std::max(2, std::atoi(result.output.c_str() + at + name.size())) : 2;
}

TEST_F(HostInBrowser, PastesAndRestoresTheClipboardBeforeItEnds) {
    const UserClipboard clipboard;
    RunningHost host({"red fox"});
    EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
    const ProcessResult result = host.submit();
    EXPECT_EQ(result, (ProcessResult{0, captured + traces({2, 0, 0, keyPresses(result), 0, 1}, {0, 0, 0, 0}), ""}));
    EXPECT_TRUE(Browser::comesToShow("The quick red fox jumps", "17-17")) << titleInFront();
    EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
}

TEST_F(HostInBrowser, WritesNothingIfTheSelectionBecameShorter) {
    const UserClipboard clipboard;
    RunningHost host({"never"});
    pressKeys({"shift+Left"});
    ASSERT_TRUE(Browser::comesToShow(Browser::document, "10-18")) << titleInFront();
    const ProcessResult result = host.submit();
    EXPECT_EQ(result, (ProcessResult{1, captured + traces({2, 0, 0, keyPresses(result), 0, 1}, {4, 0, 9, 8}),
                                     selectionChangedLine}));
    EXPECT_TRUE(Browser::comesToShow(Browser::document, "10-18")) << titleInFront();
    EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
}

TEST_F(HostInBrowser, CapturesNothingIfTheClipboardIsForbidden) {
    const UserClipboard clipboard;
    const ProcessResult result = runProcess({LOMARIS_EMBEDDING_HOST, "--no-clipboard", "never"});
    EXPECT_EQ(result, (ProcessResult{1, traces({2, 4, 0, 0, 0, 1}, {0, 0, 0, 0}),
                                     "embedding-host: This application requires keyboard/clipboard fallback, but it is "
                                     "disabled by Lomaris settings or administrator policy.\n"}));
    EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
}

}  // namespace
}  // namespace lomaris::test
