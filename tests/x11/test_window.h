#pragma once

#include "tests/x11/other_client.h"

#include <cstdint>
#include <string>

namespace lomaris::test {

/// A window in front whose properties a test sets. Needs a window manager.
class TestWindow {
public:
    /// Opens the window; returns when it is in front. Throws if that does not happen.
    TestWindow();

    /// Sets a property of the type CARDINAL, STRING or WINDOW; returns after the X server has processed it.
    void setNumber(const std::string& property, std::uint32_t value);
    void setText(const std::string& property, const std::string& bytes);
    void setWindow(const std::string& property, std::uint32_t value);
    void remove(const std::string& property);

    [[nodiscard]] xcb_window_t identifier() const { return window_; }

    /// Lets the window manager activate the window; returns when it is in front. Throws if that does not happen.
    void bringToFront();

    /// Destroys the window, not the connection.
    void destroy();

private:
    [[nodiscard]] bool isInFront();
    void waitUntilInFront();

    OtherClient client_;
    xcb_window_t window_ = client_.openWindow(client_.root());
};

}  // namespace lomaris::test
