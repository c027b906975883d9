#pragma once

#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <string>

namespace lomaris::test {

/// A machine without a desktop, so that what is asked for is always answered the same. Where the desktop cannot be
/// taken away from a program, this one is only for runs that end before they look at it.
inline ProcessOptions withoutDesktop() {
    ProcessOptions options;
    options.environment = {{"DISPLAY", std::nullopt},
                           {"WAYLAND_DISPLAY", std::nullopt},
                           {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"},
                           {"XDG_RUNTIME_DIR", std::nullopt}};
    return options;
}

/// What keeps a program from being run without a desktop, as a line for people; empty where nothing does.
inline std::string missingForNoDesktop() {
    return LOMARIS_DESKTOP_CAN_BE_HIDDEN ? ""
                                         : "skipped: the tool would work on the desktop of whoever runs the tests, "
                                           "which cannot be hidden from a program on this system";
}

/// Base of the tests of what the tool does where it looks for a desktop and finds none.
class WithoutDesktopTest : public testing::Test {
protected:
    void SetUp() override {
        if (const auto missing = missingForNoDesktop(); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }
};

/// The tool ends with this one line on standard error and nothing on standard output.
inline ProcessResult failure(const std::string& message) { return {1, "", "Lomaris macOS bridge: " + message + "\n"}; }

/// What is answered without a desktop to everything that comes as far as asking for one.
inline ProcessResult permissionRequired() {
    return failure(
        "Accessibility permission is required. Open System Settings > Privacy & Security > Accessibility and enable "
        "Lomaris (or the terminal running it).");
}

}  // namespace lomaris::test
