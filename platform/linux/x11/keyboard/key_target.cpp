#include "platform/linux/x11/keyboard/key_target.h"

#include "platform/linux/x11/front_window.h"
#include "platform/linux/x11/window_identity.h"
#include "platform/linux/x11/x11_properties.h"

#include <array>
#include <cstddef>

namespace lomaris {

namespace {

bool isOfProcess(X11Connection& connection, xcb_window_t window, ProcessIdentifier processIdentifier) {
    const std::array windows{window};
    return identifyWindows(connection, windows).front().processIdentifier == processIdentifier;
}

std::optional<xcb_window_t> newestWindowOf(X11Connection& connection, ProcessIdentifier processIdentifier) {
    // _NET_CLIENT_LIST starts with the oldest window (EWMH).
    const auto windows =
        receiveWindows(connection, requestProperty(connection, connection.root(), connection.atoms().clientList));
    const auto identities = identifyWindows(connection, windows);
    for (std::size_t index = windows.size(); index > 0; --index) {
        if (identities[index - 1].processIdentifier == processIdentifier) {
            return windows[index - 1];
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<xcb_window_t> keyTargetOf(X11Connection& connection, ProcessIdentifier processIdentifier) {
    const auto front = frontWindow(connection);
    if (front && isOfProcess(connection, *front, processIdentifier)) {
        if (const auto focused = focusedWindow(connection)) {
            return focused;
        }
    }
    return newestWindowOf(connection, processIdentifier);
}

}  // namespace lomaris
