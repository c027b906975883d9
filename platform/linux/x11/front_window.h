#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <optional>
#include <vector>

namespace lomaris {

/// The window of the application in front: the one that the window manager says is active, else the window of an
/// application around whatever has the keyboard. Nothing where there is none. The connection must be usable.
[[nodiscard]] std::optional<xcb_window_t> frontWindow(X11Connection& connection);

/// The window with the input focus. nullopt if there is none, or if the focus follows the pointer. The connection must
/// be usable.
[[nodiscard]] std::optional<xcb_window_t> focusedWindow(X11Connection& connection);

/// A window and the ones around it, innermost first, up to the one that the window manager treats as a window of an
/// application, or to the outermost one if there is no window manager. Empty for the root window and for a window that
/// does not exist. The connection must be usable.
[[nodiscard]] std::vector<xcb_window_t> windowsUpToApplication(X11Connection& connection, xcb_window_t window);

}  // namespace lomaris
