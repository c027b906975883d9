#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <xcb/xcb.h>

namespace lomaris::test {

/// A window manager on its own thread, until it is destroyed. The window that was opened or activated last is active
/// and has the focus. Maintains _NET_CLIENT_LIST, _NET_ACTIVE_WINDOW and WM_STATE, and carries out requests to activate
/// a window.
class WindowManager {
public:
    /// Returns when it receives requests of other programs. Throws if the server already has a window manager.
    WindowManager();
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;
    /// Removes its properties from the root window.
    ~WindowManager();

    /// The active window, or XCB_WINDOW_NONE.
    [[nodiscard]] xcb_window_t active() const { return active_; }

    /// The number of requests of other programs to activate a window.
    [[nodiscard]] int requests() const { return requests_; }
    /// The source indication of the last request (EWMH).
    [[nodiscard]] std::uint32_t lastSource() const { return lastSource_; }

    /// Ignores requests to activate a window from now on.
    void refuse() { refuses_ = true; }

private:
    void run();
    void handle(const xcb_generic_event_t& event);
    void manage(xcb_window_t window);
    void forget(xcb_window_t window);
    void activate(xcb_window_t window);
    void publish();
    [[nodiscard]] xcb_atom_t atom(const std::string& name) const;

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    xcb_atom_t clientList_ = XCB_ATOM_NONE;
    xcb_atom_t activeWindow_ = XCB_ATOM_NONE;
    xcb_atom_t windowState_ = XCB_ATOM_NONE;
    /// In the order in which the windows were opened.
    std::vector<xcb_window_t> windows_;
    /// In the order of activation; the active window is the last one.
    std::vector<xcb_window_t> activated_;
    std::atomic<xcb_window_t> active_ = XCB_WINDOW_NONE;
    std::atomic<int> requests_ = 0;
    std::atomic<std::uint32_t> lastSource_ = 0;
    std::atomic<bool> refuses_ = false;
    int stopEvent_ = -1;
    std::thread thread_;
};

}  // namespace lomaris::test
