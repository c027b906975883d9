#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace lomaris::test {
namespace {

const ProcessResult granted{0, "granted\n", ""};
const ProcessResult notGranted{2, "not-granted\n", ""};

TEST(PermissionStatus, IsGrantedOnADesktopWithAccessibility) {
    EXPECT_EQ(runTool({"permission-status"}), granted);
    EXPECT_EQ(runTool({"permission-status", "--prompt"}), granted);
}

TEST(PermissionStatus, IsNotGrantedWithoutADesktop) {
    ProcessOptions options;
    options.environment = {
        {"DISPLAY", std::nullopt}, {"DBUS_SESSION_BUS_ADDRESS", std::nullopt}, {"XDG_RUNTIME_DIR", std::nullopt}};
    EXPECT_EQ(runTool({"permission-status"}, options), notGranted);
    EXPECT_EQ(runTool({"permission-status", "--prompt"}, options), notGranted);
}

TEST(PermissionStatus, IsNotGrantedIfTheBusIsMissing) {
    ProcessOptions options;
    options.environment = {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"}};
    EXPECT_EQ(runTool({"permission-status"}, options), notGranted);
    EXPECT_EQ(runTool({"permission-status", "--prompt"}, options), notGranted);
}

TEST(PermissionStatus, IsGrantedByAPromptIfTheSettingIsOff) {
    const auto switchTo = [](const std::string& state) {
        return runProcess({"dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
                           "org.freedesktop.DBus.Properties.Set", "string:org.a11y.Status", "string:IsEnabled",
                           "variant:boolean:" + state})
            .status;
    };
    ASSERT_EQ(switchTo("false"), 0);
    EXPECT_EQ(runTool({"permission-status"}), notGranted);
    EXPECT_EQ(runTool({"permission-status", "--prompt"}), granted);
    EXPECT_EQ(runTool({"permission-status"}), granted);
    EXPECT_EQ(switchTo("true"), 0);
}

}  // namespace
}  // namespace lomaris::test
