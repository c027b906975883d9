#include "tests/x11/other_client.h"

#include <cstdlib>
#include <stdexcept>

namespace lomaris::test {

OtherClient::OtherClient() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("no X server");
    }
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    root_ = screen->root;
    visual_ = screen->root_visual;
}

OtherClient::~OtherClient() {
    for (const std::string& property : rootProperties_) {
        remove(root_, property);
    }
    xcb_disconnect(connection_);
}

xcb_atom_t OtherClient::atom(const std::string& name) const {
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(connection_, cookie, nullptr);
    if (reply == nullptr) {
        throw std::runtime_error("the X server is gone");
    }
    const xcb_atom_t result = reply->atom;
    std::free(reply);
    return result;
}

xcb_window_t OtherClient::openWindow(xcb_window_t parent) {
    const xcb_window_t window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, parent, 0, 0, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual_, 0, nullptr);
    xcb_map_window(connection_, window);
    settle();
    return window;
}

void OtherClient::destroy(xcb_window_t window) {
    xcb_destroy_window(connection_, window);
    settle();
}

void OtherClient::setNumbers(xcb_window_t window, const std::string& property, xcb_atom_t type,
                             const std::vector<std::uint32_t>& numbers) {
    set(window, property, type, 32, numbers.size(), numbers.data());
}

void OtherClient::setText(xcb_window_t window, const std::string& property, const std::string& bytes) {
    set(window, property, XCB_ATOM_STRING, 8, bytes.size(), bytes.data());
}

void OtherClient::remove(xcb_window_t window, const std::string& property) {
    xcb_delete_property(connection_, window, atom(property));
    settle();
}

void OtherClient::focus(xcb_window_t window) {
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    settle();
}

void OtherClient::set(xcb_window_t window, const std::string& property, xcb_atom_t type, std::uint8_t format,
                      std::size_t count, const void* data) {
    if (window == root_) {
        rootProperties_.push_back(property);
    }
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), type, format,
                        static_cast<std::uint32_t>(count), data);
    settle();
}

void OtherClient::settle() const {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

}  // namespace lomaris::test
