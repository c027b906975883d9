#pragma once

#include "platform/accessibility.h"
#include "platform/linux/x11/x11_connection.h"

#include <optional>

namespace lomaris {

/// The window of a process that a key sent to that process should go to: the one with the keyboard focus where the
/// process is in front, else its newest window that the window manager knows. Nothing where it has none. The connection
/// must be usable. Main thread.
[[nodiscard]] std::optional<xcb_window_t> keyTargetOf(X11Connection& connection, ProcessIdentifier processIdentifier);

}  // namespace lomaris
