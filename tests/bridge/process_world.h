#pragma once

#include "tests/support/process.h"

#include <string>

namespace lomaris::test {

/// A machine without a desktop, so that what is asked for is always answered the same.
inline ProcessOptions withoutDesktop() {
    ProcessOptions options;
    options.environment = {{"DISPLAY", std::nullopt},
                           {"WAYLAND_DISPLAY", std::nullopt},
                           {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"},
                           {"XDG_RUNTIME_DIR", std::nullopt}};
    return options;
}

/// The tool ends with this one line on standard error and nothing on standard output.
inline ProcessResult failure(const std::string& message) { return {1, "", "Lomaris macOS bridge: " + message + "\n"}; }

/// What is answered without a desktop to everything that comes as far as asking for one.
inline ProcessResult permissionRequired() {
    return failure(
        "Accessibility permission is required. Open System Settings > Privacy & Security > Accessibility and enable "
        "Lomaris (or the terminal running it).");
}

}  // namespace lomaris::test
