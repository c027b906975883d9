#include "platform/linux/front_window.h"

#include "platform/linux/x11_properties.h"

namespace lomaris {

namespace {

/// Deeper than any tree of windows; the tree may change while it is climbed.
constexpr int highestClimb = 64;

std::optional<xcb_window_t> activeWindow(X11Connection& connection) {
    const auto windows =
        receiveWindows(connection, requestProperty(connection, connection.root(), connection.atoms().activeWindow));
    if (windows.empty() || windows.front() == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    return windows.front();
}

/// Climbs from a window to the one that the window manager treats as a window of an application, or to the outermost
/// one where there is no window manager.
std::optional<xcb_window_t> applicationWindowAround(X11Connection& connection, xcb_window_t window) {
    for (int climb = 0; climb < highestClimb; ++climb) {
        const PropertyRequest stateRequest = requestProperty(connection, window, connection.atoms().windowState);
        const auto treeRequest = connection.xcb().query_tree(connection.handle(), window);
        const bool isManaged = receivePresence(connection, stateRequest);
        const auto tree = connection.wait<xcb_query_tree_reply_t>(treeRequest);
        if (!tree) {
            return std::nullopt;
        }
        if (isManaged || tree->parent == tree->root) {
            return window;
        }
        if (tree->parent == XCB_WINDOW_NONE) {
            return std::nullopt;
        }
        window = tree->parent;
    }
    return std::nullopt;
}

}  // namespace

std::optional<xcb_window_t> frontWindow(X11Connection& connection) {
    if (const auto active = activeWindow(connection)) {
        return active;
    }
    const auto focus =
        connection.wait<xcb_get_input_focus_reply_t>(connection.xcb().get_input_focus(connection.handle()));
    if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE || focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT) {
        return std::nullopt;
    }
    return applicationWindowAround(connection, focus->focus);
}

}  // namespace lomaris
