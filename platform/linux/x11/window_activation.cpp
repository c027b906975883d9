#include "platform/linux/x11/window_activation.h"

#include "platform/linux/x11/front_window.h"
#include "platform/linux/x11/window_identity.h"
#include "platform/linux/x11/x11_properties.h"
#include "text/utf8.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace lomaris {

namespace {

/// More windows than a session has. Another program sets the list, which may have any length.
constexpr std::size_t mostWindows = 512;

/// The source indication of pagers (EWMH): a direct user action, which window managers do not defer.
constexpr std::uint32_t sourcePager = 2;

/// The window manager has 30 times 5 ms for the activation.
constexpr int looks = 30;
constexpr auto pauseBetweenLooks = std::chrono::milliseconds(5);

std::vector<xcb_window_t> windowsOf(X11Connection& connection, ProcessIdentifier processIdentifier) {
    auto all =
        receiveWindows(connection, requestProperty(connection, connection.root(), connection.atoms().clientList));
    all.resize(std::min(all.size(), mostWindows));
    const std::vector<WindowIdentity> identities = identifyWindows(connection, all);
    std::vector<xcb_window_t> windows;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (identities[i].processIdentifier == processIdentifier) {
            windows.push_back(all[i]);
        }
    }
    return windows;
}

xcb_atom_t atomNamed(X11Connection& connection, std::string_view name) {
    const auto reply = connection.wait<xcb_intern_atom_reply_t>(
        connection.xcb().intern_atom(connection.handle(), 0, static_cast<std::uint16_t>(name.size()), name.data()));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

/// The first window with this title: `_NET_WM_NAME`, or `WM_NAME` if that is empty.
std::optional<xcb_window_t> windowTitled(X11Connection& connection, const std::vector<xcb_window_t>& windows,
                                         TextView title) {
    const std::string wanted = utf8FromText(title);
    const xcb_atom_t windowName = atomNamed(connection, "_NET_WM_NAME");
    for (const xcb_window_t window : windows) {
        const PropertyRequest name = requestProperty(connection, window, windowName);
        const PropertyRequest oldName = requestProperty(connection, window, XCB_ATOM_WM_NAME);
        const std::string nameBytes = receiveBytes(connection, name);
        const std::string oldNameBytes = receiveBytes(connection, oldName);
        if ((nameBytes.empty() ? oldNameBytes : nameBytes) == wanted) {
            return window;
        }
    }
    return std::nullopt;
}

void askWindowManager(X11Connection& connection, xcb_window_t window) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = connection.atoms().activeWindow;
    event.data.data32[0] = sourcePager;
    event.data.data32[1] = XCB_CURRENT_TIME;
    connection.xcb().send_event(connection.handle(), 0, connection.root(),
                                XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                                reinterpret_cast<const char*>(&event));
    connection.xcb().flush(connection.handle());
}

}  // namespace

bool activateWindow(X11Connection& connection, ProcessIdentifier processIdentifier, TextView title) {
    if (!connection.isUsable()) {
        return false;
    }
    const std::vector<xcb_window_t> windows = windowsOf(connection, processIdentifier);
    const auto window = windows.size() == 1 ? std::optional(windows.front()) : windowTitled(connection, windows, title);
    if (!window) {
        return false;
    }
    if (frontWindow(connection) == window) {
        return true;
    }
    askWindowManager(connection, *window);
    for (int look = 0; look < looks && connection.isUsable(); ++look) {
        if (frontWindow(connection) == window) {
            return true;
        }
        std::this_thread::sleep_for(pauseBetweenLooks);
    }
    return false;
}

}  // namespace lomaris
