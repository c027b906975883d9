#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace lomaris::test {

/// A window with the keyboard focus that notes every key it gets. It says that it belongs to this process.
class KeyWindow {
public:
    /// Opens it; returns once it has the focus. Throws where that does not happen.
    KeyWindow();
    KeyWindow(const KeyWindow&) = delete;
    KeyWindow& operator=(const KeyWindow&) = delete;
    ~KeyWindow();

    /// Sets the class name of the window.
    void setClass(const std::string& className) const;

    /// What came since the last call, in order: "+c control" is the key with the letter c going down while Control was
    /// held, "-c" goes up with no modifier, "group 2" follows where the second layout was in effect. The server has
    /// delivered everything that happened before the call.
    [[nodiscard]] std::vector<std::string> takeKeys();

    /// The key with this meaning, without a modifier, in the first layout; throws where there is none.
    [[nodiscard]] std::uint8_t keycodeOf(std::uint32_t keysym) const;

    /// Whether any key of the session is down.
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
