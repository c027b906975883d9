#pragma once

#include "platform/linux/x11_connection.h"

#include <optional>

namespace lomaris {

/// The window of the application in front: the one that the window manager says is active, else the window of an
/// application around whatever has the keyboard. Nothing where there is none. The connection must be usable.
[[nodiscard]] std::optional<xcb_window_t> frontWindow(X11Connection& connection);

}  // namespace lomaris
