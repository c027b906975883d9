#include "platform/linux/x11/keyboard/key_receiver.h"

#include "platform/linux/x11/front_window.h"
#include "platform/linux/x11/window_identity.h"

#include <vector>

namespace lomaris {

using applications::findApplication;

namespace {

/// More levels than any tree of windows has. A limit is needed because the tree may change during the loop.
constexpr int deepestDescent = 64;

/// The innermost window under the pointer. nullopt if that is the root window.
std::optional<xcb_window_t> pointedWindow(X11Connection& connection) {
    std::optional<xcb_window_t> pointed;
    for (int descent = 0; descent < deepestDescent; ++descent) {
        const auto pointer = connection.wait<xcb_query_pointer_reply_t>(
            connection.xcb().query_pointer(connection.handle(), pointed.value_or(connection.root())));
        if (!pointer || pointer->child == XCB_WINDOW_NONE) {
            return pointed;
        }
        pointed = pointer->child;
    }
    return pointed;
}

}  // namespace

std::optional<KeyReceiver> keyReceiverAround(X11Connection& connection, xcb_window_t window) {
    const std::vector<xcb_window_t> windows = windowsUpToApplication(connection, window);
    if (windows.empty()) {
        return std::nullopt;
    }
    KeyReceiver receiver{.window = windows.back(), .processIdentifier = {}};
    // The focus may be on a child window of a toolkit, or on a window of another program that is embedded in this one.
    // The innermost window whose class is in the table determines the application.
    for (const WindowIdentity& identity : identifyWindows(connection, windows)) {
        if (receiver.application == nullptr) {
            receiver.application = findApplication(identity.windowClass.className);
        }
        if (!receiver.processIdentifier) {
            receiver.processIdentifier = identity.processIdentifier;
        }
    }
    return receiver;
}

std::optional<KeyReceiver> sessionKeyReceiver(X11Connection& connection) {
    auto window = focusedWindow(connection);
    if (!window) {
        window = frontWindow(connection);
    }
    if (!window) {
        window = pointedWindow(connection);
    }
    return window ? keyReceiverAround(connection, *window) : std::nullopt;
}

}  // namespace lomaris
