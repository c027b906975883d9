#pragma once

#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <string>

namespace lomaris::test {

/// An environment without a desktop, so that the result does not depend on the machine. On a system on which the
/// desktop cannot be hidden, use it only for runs that end before they access the desktop.
inline ProcessOptions withoutDesktop() {
    ProcessOptions options;
    options.environment = {{"DISPLAY", std::nullopt},
                           {"WAYLAND_DISPLAY", std::nullopt},
                           {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"},
                           {"XDG_RUNTIME_DIR", std::nullopt}};
    return options;
}

/// The printed reason why a program cannot be run without a desktop. Empty if it can.
inline std::string reasonDesktopCannotBeHidden() {
    return LOMARIS_DESKTOP_CAN_BE_HIDDEN ? ""
                                         : "skipped: the tool would use the desktop of the user who runs the "
                                           "tests, which cannot be hidden from a program on this system";
}

/// Base of tests that run the tool without a desktop. Skips the test if the desktop cannot be hidden.
class WithoutDesktopTest : public testing::Test {
protected:
    void SetUp() override {
        if (const auto reason = reasonDesktopCannotBeHidden(); !reason.empty()) {
            GTEST_SKIP() << reason;
        }
    }
};

/// The result of a tool that writes this one line to standard error and nothing to standard output.
inline ProcessResult failure(const std::string& message) { return {1, "", "Lomaris macOS bridge: " + message + "\n"}; }

/// The result of every command that accesses the desktop if there is none.
inline ProcessResult permissionRequired() {
    return failure(
        "Accessibility permission is required. Open System Settings > Privacy & Security > Accessibility and enable "
        "Lomaris (or the terminal running it).");
}

}  // namespace lomaris::test
