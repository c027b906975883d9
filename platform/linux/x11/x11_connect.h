#pragma once

#include "platform/linux/x11/x11_library.h"

#include <chrono>

namespace lomaris {

/// A connection to the X server in DISPLAY, and the screen number in DISPLAY. `connection` is null if there is no
/// server, it refused the connection, or it did not reply in time.
struct X11Connected {
    xcb_connection_t* connection = nullptr;
    int screen = 0;
};

/// Connects to the X server, with a timeout of `deadline`. libxcb has no timeout for the handshake, so it runs on a
/// separate thread, which is abandoned if the server hangs; until that thread ends, further attempts fail at once. The
/// caller owns the connection. Main thread.
[[nodiscard]] X11Connected connectToDisplay(const XcbFunctions& xcb, std::chrono::milliseconds deadline);

/// Connects to the X server without a timeout. The caller owns the connection. Any thread.
[[nodiscard]] X11Connected connectWithoutDeadline(const XcbFunctions& xcb);

}  // namespace lomaris
