#pragma once

#include <cstdint>
#include <string>

#include <xcb/xcb.h>

namespace lomaris::test {

/// A window in front that says of its application whatever a test makes it say.
class TestWindow {
public:
    /// Opens it; returns once it is in front. Throws where that does not happen.
    TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;
    ~TestWindow();

    /// Sets a property, of a predefined type; returns once the X server has it.
    void setNumber(const std::string& property, std::uint32_t value);
    void setText(const std::string& property, const std::string& bytes);
    void setWindow(const std::string& property, std::uint32_t value);
    void remove(const std::string& property);

    /// Destroys the window, not the connection.
    void destroy();

private:
    [[nodiscard]] xcb_atom_t atom(const std::string& name);
    void set(const std::string& property, xcb_atom_t type, std::uint8_t format, std::uint32_t count, const void* data);
    void settle();
    [[nodiscard]] bool isInFront();

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    xcb_window_t window_ = XCB_WINDOW_NONE;
};

}  // namespace lomaris::test
