#pragma once

#include "platform/linux/x11/x11_library.h"

#include <chrono>

namespace lomaris {

/// A connection to the X server that DISPLAY names, and the number of the screen that it names. No connection where
/// there is no server, it refused, or it did not answer in time.
struct X11Connected {
    xcb_connection_t* connection = nullptr;
    int screen = 0;
};

/// Connects to the X server within `deadline`. The library itself waits without one while it shakes hands, so a thread
/// of its own does that and is left behind where the server hangs; until it ends, further tries fail at once. The
/// caller owns the connection. Main thread.
[[nodiscard]] X11Connected connectToDisplay(const XcbFunctions& xcb, std::chrono::milliseconds deadline);

/// Connects to the X server, however long that takes. The caller owns the connection. Any thread.
[[nodiscard]] X11Connected connectWithoutDeadline(const XcbFunctions& xcb);

}  // namespace lomaris
