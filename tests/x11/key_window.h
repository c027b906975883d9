#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace lomaris::test {

/// A window with the input focus that records all key events. It has the process identifier of this process.
class KeyWindow {
public:
    /// Opens the window; returns when it has the focus. Throws if that does not happen.
    KeyWindow();
    KeyWindow(const KeyWindow&) = delete;
    KeyWindow& operator=(const KeyWindow&) = delete;
    ~KeyWindow();

    /// Sets the class name of the window.
    void setClass(const std::string& className) const;

    /// The key events since the last call, in order: "+c control" is a press of the key c while Control was held, "-c"
    /// a release without a modifier; "group 2" is appended if the second group was in effect. Includes all events that
    /// the server has sent before the call.
    [[nodiscard]] std::vector<std::string> takeKeys();

    /// The key with this keysym without a modifier in the first group. Throws if there is none.
    [[nodiscard]] std::uint8_t keycodeOf(std::uint32_t keysym) const;

    /// True if any key of the session is down.
    [[nodiscard]] bool isAnyKeyDown() const;

    [[nodiscard]] bool hasFocus() const;

private:
    [[nodiscard]] std::string describe(const xcb_key_press_event_t& event) const;
    [[nodiscard]] std::vector<std::uint32_t> keysymsOf(std::uint8_t keycode) const;
    void settle() const;

    xcb_connection_t* connection_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
};

}  // namespace lomaris::test
