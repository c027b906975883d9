#pragma once

#include "platform/linux/x11/x11_connection.h"
#include "platform/workspace.h"
#include "text/text.h"

namespace lomaris {

/// Requests that the window manager activate the window of the process with this title, or its only window regardless
/// of the title (EWMH, _NET_ACTIVE_WINDOW). Returns true if that window is active afterwards. Blocks for up to 150 ms
/// plus the timeouts of the connection. Main thread.
[[nodiscard]] bool activateWindow(X11Connection& connection, ProcessIdentifier processIdentifier, TextView title);

}  // namespace lomaris
