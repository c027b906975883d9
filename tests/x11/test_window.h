#pragma once

#include "tests/x11/other_client.h"

#include <cstdint>
#include <string>

namespace lomaris::test {

/// A window in front that says of its application whatever a test makes it say. Needs a window manager.
class TestWindow {
public:
    /// Opens it; returns once it is in front. Throws if that does not happen.
    TestWindow();

    /// Sets a property, of a predefined type; returns once the X server has it.
    void setNumber(const std::string& property, std::uint32_t value);
    void setText(const std::string& property, const std::string& bytes);
    void setWindow(const std::string& property, std::uint32_t value);
    void remove(const std::string& property);

    [[nodiscard]] xcb_window_t identifier() const { return window_; }

    /// Has the window manager activate it; returns once it is in front. Throws if that does not happen.
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
