#include "tests/real/test_window.h"

#include "tests/real/waiting.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace lomaris::test {

TestWindow::TestWindow() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("no X server");
    }
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    root_ = screen->root;
    window_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, root_, 0, 0, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    xcb_map_window(connection_, window_);
    settle();
    if (!waitFor([this] { return isInFront(); })) {
        xcb_disconnect(connection_);
        throw std::runtime_error("the test window did not come to the front");
    }
}

TestWindow::~TestWindow() { xcb_disconnect(connection_); }

void TestWindow::setNumber(const std::string& property, std::uint32_t value) {
    set(property, XCB_ATOM_CARDINAL, 32, 1, &value);
}

void TestWindow::setText(const std::string& property, const std::string& bytes) {
    set(property, XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(bytes.size()), bytes.data());
}

void TestWindow::setWindow(const std::string& property, std::uint32_t value) {
    set(property, XCB_ATOM_WINDOW, 32, 1, &value);
}

void TestWindow::remove(const std::string& property) {
    xcb_delete_property(connection_, window_, atom(property));
    settle();
}

void TestWindow::destroy() {
    xcb_destroy_window(connection_, window_);
    settle();
}

xcb_atom_t TestWindow::atom(const std::string& name) {
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(connection_, cookie, nullptr);
    if (reply == nullptr) {
        throw std::runtime_error("the X server is gone");
    }
    const xcb_atom_t result = reply->atom;
    std::free(reply);
    return result;
}

void TestWindow::set(const std::string& property, xcb_atom_t type, std::uint8_t format, std::uint32_t count,
                     const void* data) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, atom(property), type, format, count, data);
    settle();
}

void TestWindow::settle() {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

bool TestWindow::isInFront() {
    const auto cookie = xcb_get_property(connection_, 0, root_, atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1);
    xcb_get_property_reply_t* const reply = xcb_get_property_reply(connection_, cookie, nullptr);
    xcb_window_t active = XCB_WINDOW_NONE;
    if (reply != nullptr && xcb_get_property_value_length(reply) == sizeof active) {
        std::memcpy(&active, xcb_get_property_value(reply), sizeof active);
    }
    std::free(reply);
    return active == window_;
}

}  // namespace lomaris::test
