#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <optional>
#include <vector>

namespace lomaris {

/// The window of the front application: `_NET_ACTIVE_WINDOW` of the root window (EWMH) if the window manager sets it,
/// otherwise the application window that contains the window with the input focus. nullopt if there is none. The
/// connection must be usable.
[[nodiscard]] std::optional<xcb_window_t> frontWindow(X11Connection& connection);

/// The window with the input focus. nullopt if there is none, or if the focus follows the pointer. The connection must
/// be usable.
[[nodiscard]] std::optional<xcb_window_t> focusedWindow(X11Connection& connection);

/// A window and its ancestors, starting with the window, up to the first one with the property `WM_STATE`, which a
/// window manager sets on the top-level windows of applications (ICCCM 4.1.3.1), or up to the child of the root window
/// if none has it. Empty for the root window and for a window that does not exist. The connection must be usable.
[[nodiscard]] std::vector<xcb_window_t> windowsUpToApplication(X11Connection& connection, xcb_window_t window);

}  // namespace lomaris
