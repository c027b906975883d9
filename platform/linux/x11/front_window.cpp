#include "platform/linux/x11/front_window.h"

#include "platform/linux/x11/x11_properties.h"

namespace lomaris {

namespace {

/// More levels than any tree of windows has. A limit is needed because the tree may change during the loop.
constexpr int highestClimb = 64;

std::optional<xcb_window_t> activeWindow(X11Connection& connection) {
    const auto windows =
        receiveWindows(connection, requestProperty(connection, connection.root(), connection.atoms().activeWindow));
    if (windows.empty() || windows.front() == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    return windows.front();
}

}  // namespace

std::optional<xcb_window_t> focusedWindow(X11Connection& connection) {
    const auto focus =
        connection.wait<xcb_get_input_focus_reply_t>(connection.xcb().get_input_focus(connection.handle()));
    if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE || focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT) {
        return std::nullopt;
    }
    return focus->focus;
}

std::vector<xcb_window_t> windowsUpToApplication(X11Connection& connection, xcb_window_t window) {
    std::vector<xcb_window_t> windows;
    for (int climb = 0; climb < highestClimb; ++climb) {
        const PropertyRequest stateRequest = requestProperty(connection, window, connection.atoms().windowState);
        const auto treeRequest = connection.xcb().query_tree(connection.handle(), window);
        const bool isManaged = receivePresence(connection, stateRequest);
        const auto tree = connection.wait<xcb_query_tree_reply_t>(treeRequest);
        if (!tree) {
            return {};
        }
        windows.push_back(window);
        if (isManaged || tree->parent == tree->root) {
            return windows;
        }
        if (tree->parent == XCB_WINDOW_NONE) {
            return {};
        }
        window = tree->parent;
    }
    return {};
}

std::optional<xcb_window_t> frontWindow(X11Connection& connection) {
    if (const auto active = activeWindow(connection)) {
        return active;
    }
    const auto focused = focusedWindow(connection);
    if (!focused) {
        return std::nullopt;
    }
    const std::vector<xcb_window_t> windows = windowsUpToApplication(connection, *focused);
    return windows.empty() ? std::nullopt : std::optional(windows.back());
}

}  // namespace lomaris
