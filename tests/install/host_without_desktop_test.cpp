#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <string>

namespace lomaris::test {
namespace {

TEST(EmbeddingHost, EndsWithOneErrorLineWithoutADesktop) {
    ProcessOptions options;
    options.input = "\n";
    options.environment = {{"DISPLAY", std::nullopt},
                           {"WAYLAND_DISPLAY", std::nullopt},
                           {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"},
                           {"XDG_RUNTIME_DIR", std::nullopt}};
    EXPECT_EQ(runProcess({LOMARIS_EMBEDDING_HOST, "never"}, options),
              (ProcessResult{1,
                             "capture.route=0\n"
                             "capture.error=4\n"
                             "capture.copy_item=0\n"
                             "capture.key_presses=0\n"
                             "capture.menu_presses=0\n"
                             "capture.web=0\n"
                             "guard.reason=0\n"
                             "guard.error=0\n"
                             "guard.expected_chars=0\n"
                             "guard.current_chars=0\n",
                             "embedding-host: Accessibility permission is required. Open System Settings > "
                             "Privacy & Security > Accessibility and enable Lomaris (or the terminal running it).\n"}));
}

TEST(EmbeddingHost, PrintsItsUsage) {
    const ProcessResult usage{1, "", "embedding-host: Usage: embedding-host [--chat] [--no-clipboard] REPLACEMENT\n"};
    EXPECT_EQ(runProcess({LOMARIS_EMBEDDING_HOST}), usage);
    EXPECT_EQ(runProcess({LOMARIS_EMBEDDING_HOST, "--talk", "never"}), usage);
}

}  // namespace
}  // namespace lomaris::test
