#include "tests/x11/key_window.h"

#include "tests/support/waiting.h"

#include <sys/uio.h>
#include <unistd.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace lomaris::test {

namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

constexpr std::array<std::pair<std::uint32_t, std::string_view>, 7> keyNames{{
    {'c', "c"},
    {'v', "v"},
    {0xff08, "delete"},
    {0xffe1, "left shift"},
    {0xffe3, "left control"},
    {0xffe4, "right control"},
    {0xffe5, "caps lock"},
}};

constexpr std::array<std::string_view, 8> modifierNames{"shift",      "lock",       "control",    "modifier 1",
                                                        "modifier 2", "modifier 3", "modifier 4", "modifier 5"};

/// Key events have the group only for clients that have sent XkbUseExtension.
void announceLayouts(xcb_connection_t* connection) {
    static xcb_extension_t extension{"XKEYBOARD", 0};
    std::array<std::uint16_t, 4> request{0, 0, 1, 0};
    std::array<iovec, 4> parts{};
    parts[2] = {.iov_base = request.data(), .iov_len = sizeof request};
    const xcb_protocol_request_t protocol{.count = 2, .ext = &extension, .opcode = 0, .isvoid = 0};
    const unsigned sequence = xcb_send_request(connection, XCB_REQUEST_CHECKED, &parts[2], &protocol);
    if (!Owned<void>(xcb_wait_for_reply(connection, sequence, nullptr))) {
        throw std::runtime_error("the X server knows nothing of layouts");
    }
}

}  // namespace

KeyWindow::KeyWindow() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("no X server");
    }
    announceLayouts(connection_);
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
    window_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_EVENT_MASK, &events);
    const std::string_view name = "_NET_WM_PID";
    const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    const auto process = static_cast<std::uint32_t>(getpid());
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, atom->atom, XCB_ATOM_CARDINAL, 32, 1, &process);
    xcb_map_window(connection_, window_);
    if (!waitFor([this] { return hasFocus(); })) {
        xcb_disconnect(connection_);
        throw std::runtime_error("the window did not get the focus");
    }
}

KeyWindow::~KeyWindow() { xcb_disconnect(connection_); }

void KeyWindow::setClass(const std::string& className) const {
    const std::string bytes = "instance" + std::string(1, '\0') + className + std::string(1, '\0');
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
    settle();
}

std::vector<std::string> KeyWindow::takeKeys() {
    settle();
    std::vector<std::string> keys;
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        // SendEvent sets the highest bit of the type.
        const unsigned type = event->response_type & 0x7fU;
        if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
            keys.push_back(describe(*reinterpret_cast<const xcb_key_press_event_t*>(event.get())));
        }
    }
    return keys;
}

std::uint8_t KeyWindow::keycodeOf(std::uint32_t keysym) const {
    for (unsigned keycode = 8; keycode <= 255; ++keycode) {
        const auto keysyms = keysymsOf(static_cast<std::uint8_t>(keycode));
        if (!keysyms.empty() && keysyms.front() == keysym) {
            return static_cast<std::uint8_t>(keycode);
        }
    }
    throw std::runtime_error("no such key");
}

bool KeyWindow::isAnyKeyDown() const {
    const Owned<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(connection_, xcb_query_keymap(connection_), nullptr));
    return std::any_of(std::begin(reply->keys), std::end(reply->keys), [](std::uint8_t bits) { return bits != 0; });
}

bool KeyWindow::hasFocus() const {
    const Owned<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return focus != nullptr && focus->focus == window_;
}

std::string KeyWindow::describe(const xcb_key_press_event_t& event) const {
    std::string text = (event.response_type & 0x7fU) == XCB_KEY_PRESS ? "+" : "-";
    std::string_view name = "another key";
    const auto keysyms = keysymsOf(event.detail);
    for (const auto& [keysym, keyName] : keyNames) {
        if (std::find(keysyms.begin(), keysyms.end(), keysym) != keysyms.end()) {
            name = keyName;
        }
    }
    text += name;
    for (std::size_t modifier = 0; modifier < modifierNames.size(); ++modifier) {
        if (((unsigned{event.state} >> modifier) & 1U) != 0) {
            text += " ";
            text += modifierNames[modifier];
        }
    }
    const unsigned group = (unsigned{event.state} >> 13U) & 3U;
    return group == 0 ? text : text + " group " + std::to_string(group + 1);
}

std::vector<std::uint32_t> KeyWindow::keysymsOf(std::uint8_t keycode) const {
    const Owned<xcb_get_keyboard_mapping_reply_t> reply(
        xcb_get_keyboard_mapping_reply(connection_, xcb_get_keyboard_mapping(connection_, keycode, 1), nullptr));
    if (!reply) {
        return {};
    }
    const xcb_keysym_t* const keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
    return {keysyms, keysyms + xcb_get_keyboard_mapping_keysyms_length(reply.get())};
}

void KeyWindow::settle() const {
    const Owned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

}  // namespace lomaris::test
