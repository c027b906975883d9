#include "tests/x11/window_manager.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace lomaris::test {

namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

constexpr std::uint32_t normalState = 1;

}  // namespace

WindowManager::WindowManager() : connection_(xcb_connect(nullptr, nullptr)), stopEvent_(eventfd(0, EFD_CLOEXEC)) {
    if (xcb_connection_has_error(connection_) != 0) {
        throw std::runtime_error("no X server");
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    clientList_ = atom("_NET_CLIENT_LIST");
    activeWindow_ = atom("_NET_ACTIVE_WINDOW");
    windowState_ = atom("WM_STATE");
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    const auto request = xcb_change_window_attributes_checked(connection_, root_, XCB_CW_EVENT_MASK, &events);
    if (const std::unique_ptr<xcb_generic_error_t, Free> error(xcb_request_check(connection_, request)); error) {
        throw std::runtime_error("there is another window manager");
    }
    publish();
    thread_ = std::thread([this] { run(); });
}

WindowManager::~WindowManager() {
    eventfd_write(stopEvent_, 1);
    thread_.join();
    xcb_delete_property(connection_, root_, clientList_);
    xcb_delete_property(connection_, root_, activeWindow_);
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    xcb_disconnect(connection_);
    close(stopEvent_);
}

void WindowManager::run() {
    std::array<pollfd, 2> descriptors{{{xcb_get_file_descriptor(connection_), POLLIN, 0}, {stopEvent_, POLLIN, 0}}};
    while (descriptors[1].revents == 0 && xcb_connection_has_error(connection_) == 0) {
        std::unique_ptr<xcb_generic_event_t, Free> event;
        do {
            xcb_flush(connection_);
            // After the flush, which may read events that a wait for the socket would miss.
            event.reset(xcb_poll_for_event(connection_));
            if (event) {
                handle(*event);
            }
        } while (event);
        poll(descriptors.data(), descriptors.size(), -1);
    }
}

void WindowManager::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7fU) {
        case XCB_MAP_REQUEST:
            manage(reinterpret_cast<const xcb_map_request_event_t&>(event).window);
            break;
        case XCB_DESTROY_NOTIFY:
            forget(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
            break;
        case XCB_CLIENT_MESSAGE: {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            if (message.type != activeWindow_ || std::ranges::find(windows_, message.window) == windows_.end()) {
                break;
            }
            lastSource_ = message.data.data32[0];
            ++requests_;
            if (!refuses_) {
                activate(message.window);
            }
            break;
        }
        default:
            break;
    }
}

void WindowManager::manage(xcb_window_t window) {
    const std::array<std::uint32_t, 2> state{normalState, XCB_WINDOW_NONE};
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, windowState_, windowState_, 32, state.size(),
                        state.data());
    xcb_map_window(connection_, window);
    windows_.push_back(window);
    activate(window);
}

void WindowManager::forget(xcb_window_t window) {
    std::erase(windows_, window);
    std::erase(activated_, window);
    if (activated_.empty()) {
        publish();
    } else {
        activate(activated_.back());
    }
}

void WindowManager::activate(xcb_window_t window) {
    std::erase(activated_, window);
    activated_.push_back(window);
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    publish();
}

void WindowManager::publish() {
    const xcb_window_t active = activated_.empty() ? xcb_window_t{XCB_WINDOW_NONE} : activated_.back();
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root_, clientList_, XCB_ATOM_WINDOW, 32,
                        static_cast<std::uint32_t>(windows_.size()), windows_.data());
    active_ = active;
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root_, activeWindow_, XCB_ATOM_WINDOW, 32, 1, &active);
}

xcb_atom_t WindowManager::atom(const std::string& name) const {
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr));
    if (!reply) {
        throw std::runtime_error("the X server is gone");
    }
    return reply->atom;
}

}  // namespace lomaris::test
