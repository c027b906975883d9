#pragma once

#include "platform/accessibility.h"
#include "platform/linux/x11/window_class.h"
#include "platform/linux/x11/x11_connection.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lomaris {

/// The properties of a window that identify its application. The application sets them, so they may be wrong.
struct WindowIdentity {
    /// `_NET_WM_PID` (EWMH). nullopt if it is not set, or if `WM_CLIENT_MACHINE` is another machine.
    std::optional<ProcessIdentifier> processIdentifier;
    /// `_GTK_APPLICATION_ID` ("org.xfce.mousepad"). Empty if it is not set.
    std::string applicationIdentifier;
    WindowClass windowClass;
};

/// Returns the identity of each window, in the same order; an empty one for a window that does not exist. Sends all
/// requests before it waits for the first reply. The connection must be usable.
[[nodiscard]] std::vector<WindowIdentity> identifyWindows(X11Connection& connection,
                                                          std::span<const xcb_window_t> windows);

}  // namespace lomaris
