#pragma once

#include "platform/accessibility.h"
#include "platform/linux/x11/x11_connection.h"

#include <optional>

namespace lomaris {

/// The window to which a key event for a process is sent: the window with the input focus if the process is the front
/// application, otherwise its newest window in `_NET_CLIENT_LIST` (EWMH). nullopt if it has none. The connection must
/// be usable. Main thread.
[[nodiscard]] std::optional<xcb_window_t> keyTargetOf(X11Connection& connection, ProcessIdentifier processIdentifier);

}  // namespace lomaris
