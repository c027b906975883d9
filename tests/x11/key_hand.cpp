#include "tests/x11/key_hand.h"

#include "platform/linux/x11/keyboard/x11_keyboard_requests.h"

#include <xcb/xtest.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace lomaris::test {

namespace {

std::uint8_t keyboardOfUser() {
    X11Connection connection;
    if (!connection.isUsable() || !prepareInputExtension(connection, InputExtension::xInput)) {
        throw std::runtime_error("the X server tells nothing of its devices");
    }
    const auto devices = receiveInputDevices(connection, requestInputDevices(connection));
    if (!devices || devices->user.empty()) {
        throw std::runtime_error("the user has no keyboard");
    }
    return static_cast<std::uint8_t>(devices->user.front());
}

}  // namespace

KeyHand::KeyHand() : connection_(xcb_connect(nullptr, nullptr)), keyboard_(keyboardOfUser()) {
    const std::string_view name = "XInputExtension";
    xcb_query_extension_reply_t* const reply = xcb_query_extension_reply(
        connection_, xcb_query_extension(connection_, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
    if (reply == nullptr) {
        throw std::runtime_error("the X server is gone");
    }
    firstDeviceEvent_ = reply->first_event;
    std::free(reply);
}

KeyHand::~KeyHand() { xcb_disconnect(connection_); }

void KeyHand::pressKeyOfUser() {
    constexpr std::uint8_t leftShift = 50;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    holdAsUser(leftShift);
    releaseAsUser(leftShift);
}

void KeyHand::moveOnKeyboard(unsigned direction, std::uint8_t keycode) {
    move(firstDeviceEvent_ + direction, keycode, keyboard_);
}

void KeyHand::move(unsigned event, std::uint8_t keycode, std::uint8_t device) {
    const auto request = xcb_test_fake_input_checked(connection_, static_cast<std::uint8_t>(event), keycode,
                                                     XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, device);
    if (xcb_generic_error_t* const error = xcb_request_check(connection_, request)) {
        std::free(error);
        throw std::runtime_error("the X server refused a key");
    }
}

}  // namespace lomaris::test
