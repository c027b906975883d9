#include "tests/linux/fake_desktop.h"

#include "platform/attributes.h"

#include <cstdlib>

namespace lomaris::test {
namespace {

class AccessibilityTrust : public FakeDesktop {};

TEST_F(AccessibilityTrust, IsGrantedIfTheSettingIsOn) {
    start();
    EXPECT_TRUE(accessibility().isProcessTrusted(TrustPrompt::none));
}

TEST_F(AccessibilityTrust, IsMissingWithoutADisplay) {
    unsetenv("DISPLAY");
    start();
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::ask));
}

TEST_F(AccessibilityTrust, IsMissingWithoutASessionBus) {
    start();
    const std::vector<std::string> addresses{"unix:path=/nonexistent/bus", "nonsense", "unixexec:path=/bin/false",
                                             ";;"};
    for (const std::string& address : addresses) {
        setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
        const auto other = makeLinuxAccessibility(workspace());
        EXPECT_FALSE(other->isProcessTrusted(TrustPrompt::ask)) << address;
        EXPECT_EQ(other->copyAttribute(application(), attribute::role), failureOf(AXError::apiDisabled)) << address;
    }
}

TEST_F(AccessibilityTrust, FindsTheSessionBusInTheRuntimeDirectory) {
    start();
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    setenv("XDG_RUNTIME_DIR", "/nonexistent", 1);
    const auto other = makeLinuxAccessibility(workspace());
    EXPECT_FALSE(other->isProcessTrusted(TrustPrompt::none));
    unsetenv("XDG_RUNTIME_DIR");
}

TEST_F(AccessibilityTrust, EnablesTheSettingOnlyWithAPrompt) {
    auto enabled = std::make_shared<std::atomic<bool>>(false);
    desktop().answerWith("/org/a11y/bus", "Get org.a11y.Status.IsEnabled",
                         [enabled] { return booleanProperty(*enabled); });
    desktop().answerWith("/org/a11y/bus", "Set org.a11y.Status.IsEnabled", [enabled] {
        *enabled = true;
        return nothing();
    });
    start();
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_FALSE(*enabled);
    EXPECT_TRUE(accessibility().isProcessTrusted(TrustPrompt::ask));
    EXPECT_TRUE(*enabled);
    EXPECT_TRUE(accessibility().isProcessTrusted(TrustPrompt::none));
}

TEST_F(AccessibilityTrust, IsMissingIfTheSettingCannotBeRead) {
    desktop().answer("/org/a11y/bus", "Get org.a11y.Status.IsEnabled", stringProperty("true"));
    start();
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::ask));
    EXPECT_EQ(desktop().callCount("/org/a11y/bus", "Set org.a11y.Status.IsEnabled"), 0);
}

TEST_F(AccessibilityTrust, IsMissingIfTheLauncherHangs) {
    desktop().hang("/org/a11y/bus", "org.a11y.Bus.GetAddress");
    start();
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_EQ(desktop().callCount(), 1);
}

TEST_F(AccessibilityTrust, IsMissingIfTheAddressIsNotReachable) {
    desktop().answer("/org/a11y/bus", "org.a11y.Bus.GetAddress", string("unix:path=/nonexistent/bus"));
    start();
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::none));
}

}  // namespace
}  // namespace lomaris::test
