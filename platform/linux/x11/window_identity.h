#pragma once

#include "platform/accessibility.h"
#include "platform/linux/x11/window_class.h"
#include "platform/linux/x11/x11_connection.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lomaris {

/// What one window tells of its application. All of it is set by the application and may be wrong.
struct WindowIdentity {
    /// Nothing where the window names no process of this machine.
    std::optional<ProcessIdentifier> processIdentifier;
    /// The identifier that the application gives itself ("org.xfce.mousepad"), empty where it gives none.
    std::string applicationIdentifier;
    WindowClass windowClass;
};

/// The identities of several windows, one for each, asked for together; empty identities for windows that are gone. The
/// connection must be usable.
[[nodiscard]] std::vector<WindowIdentity> identifyWindows(X11Connection& connection,
                                                          std::span<const xcb_window_t> windows);

}  // namespace lomaris
