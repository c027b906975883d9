#pragma once

#include "platform/accessibility.h"
#include "platform/linux/applications/application_table.h"
#include "platform/linux/x11/x11_connection.h"

#include <optional>

namespace lomaris {

/// The application window that a key event reaches.
struct KeyReceiver {
    xcb_window_t window = XCB_WINDOW_NONE;
    /// nullopt if the window has no `_NET_WM_PID`, or that of a process on another machine.
    std::optional<ProcessIdentifier> processIdentifier;
    /// The application's row in the table. Null if it has none.
    const applications::Application* application = nullptr;

    friend bool operator==(const KeyReceiver&, const KeyReceiver&) = default;
};

// The connection must be usable. Main thread.

/// The receiver of a key event that is sent to `window`. nullopt if the window does not exist.
[[nodiscard]] std::optional<KeyReceiver> keyReceiverAround(X11Connection& connection, xcb_window_t window);

/// The receiver of a key that is pressed now: the window with the input focus, otherwise the active window, otherwise
/// the window under the pointer. nullopt if there is none of these.
[[nodiscard]] std::optional<KeyReceiver> sessionKeyReceiver(X11Connection& connection);

}  // namespace lomaris
