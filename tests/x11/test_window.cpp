#include "tests/x11/test_window.h"

#include "tests/support/waiting.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace lomaris::test {

TestWindow::TestWindow() { waitUntilInFront(); }

void TestWindow::setNumber(const std::string& property, std::uint32_t value) {
    client_.setNumbers(window_, property, XCB_ATOM_CARDINAL, {value});
}

void TestWindow::setText(const std::string& property, const std::string& bytes) {
    client_.setText(window_, property, bytes);
}

void TestWindow::setWindow(const std::string& property, std::uint32_t value) {
    client_.setNumbers(window_, property, XCB_ATOM_WINDOW, {value});
}

void TestWindow::remove(const std::string& property) { client_.remove(window_, property); }

void TestWindow::bringToFront() {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window_;
    event.type = client_.atom("_NET_ACTIVE_WINDOW");
    xcb_send_event(client_.handle(), 0, client_.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
    waitUntilInFront();
}

void TestWindow::destroy() { client_.destroy(window_); }

void TestWindow::waitUntilInFront() {
    if (!waitFor([this] { return isInFront(); })) {
        throw std::runtime_error("the test window did not come to the front");
    }
}

bool TestWindow::isInFront() {
    const auto cookie = xcb_get_property(client_.handle(), 0, client_.root(), client_.atom("_NET_ACTIVE_WINDOW"),
                                         XCB_ATOM_WINDOW, 0, 1);
    xcb_get_property_reply_t* const reply = xcb_get_property_reply(client_.handle(), cookie, nullptr);
    xcb_window_t active = XCB_WINDOW_NONE;
    if (reply != nullptr && xcb_get_property_value_length(reply) == sizeof active) {
        std::memcpy(&active, xcb_get_property_value(reply), sizeof active);
    }
    std::free(reply);
    return active == window_;
}

}  // namespace lomaris::test
