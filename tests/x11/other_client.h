#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace lomaris::test {

/// Another client of the X server. It opens windows and sets properties, also on the root window, as a window manager
/// does. Each operation returns after the server has processed it.
class OtherClient {
public:
    OtherClient();
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;
    /// Destroys its windows and removes the properties that it set on the root window.
    ~OtherClient();

    [[nodiscard]] xcb_connection_t* handle() const { return connection_; }
    [[nodiscard]] xcb_window_t root() const { return root_; }
    [[nodiscard]] xcb_atom_t atom(const std::string& name) const;

    /// Opens and maps a window. If there is a window manager, it may map it later.
    [[nodiscard]] xcb_window_t openWindow(xcb_window_t parent);
    void destroy(xcb_window_t window);

    void setNumbers(xcb_window_t window, const std::string& property, xcb_atom_t type,
                    const std::vector<std::uint32_t>& numbers);
    void setText(xcb_window_t window, const std::string& property, const std::string& bytes);
    void remove(xcb_window_t window, const std::string& property);

    /// Sets the input focus to a window, to none (XCB_INPUT_FOCUS_NONE), or to the window under the pointer
    /// (XCB_INPUT_FOCUS_POINTER_ROOT).
    void focus(xcb_window_t window);

private:
    void set(xcb_window_t window, const std::string& property, xcb_atom_t type, std::uint8_t format, std::size_t count,
             const void* data);
    void settle() const;

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    std::uint32_t visual_ = 0;
    std::vector<std::string> rootProperties_;
};

}  // namespace lomaris::test
