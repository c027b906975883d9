#include "platform/linux/x11/keyboard/key_poster.h"

#include "platform/posix/termination_signals.h"

#include <array>
#include <cstring>

namespace lomaris {

namespace {

constexpr unsigned groupShift = 13;

std::vector<KeyboardRequest> requestKeysOf(X11Connection& connection, const std::vector<InputDevice>& devices) {
    std::vector<KeyboardRequest> requests;
    requests.reserve(devices.size());
    for (const InputDevice device : devices) {
        requests.push_back(requestPressedKeys(connection, device));
    }
    return requests;
}

}  // namespace

bool KeyPoster::isReady() {
    if (!isReady_) {
        isReady_ = connection_.isUsable() && prepareInputExtension(connection_, InputExtension::xTest);
        hasKeyboardExtension_ = *isReady_ && prepareInputExtension(connection_, InputExtension::xkb);
        tellsDevicesApart_ = *isReady_ && prepareInputExtension(connection_, InputExtension::xInput);
    }
    return *isReady_ && connection_.isUsable();
}

bool KeyPoster::canPress(KeyWish wish) {
    const auto now = isReady() ? look() : std::nullopt;
    return now && planKeyPress(*now, wish);
}

void KeyPoster::press(KeyWish wish, const std::function<bool()>& mayPress) {
    if (!isReady()) {
        return;
    }
    // A signal that ended the process between the press and the putting back would leave the keyboard changed.
    const TerminationSignalsBlock block;
    connection_.xcb().grab_server(connection_.handle());
    if (mayPress()) {
        pressWhileGrabbed(wish);
    }
    connection_.xcb().ungrab_server(connection_.handle());
    settle();
}

void KeyPoster::pressWhileGrabbed(KeyWish wish) {
    const auto before = look();
    const auto steps = before ? planKeyPress(*before, wish) : std::nullopt;
    if (!steps) {
        return;
    }
    for (const KeyStep& step : *steps) {
        sendKeyStep(connection_, step);
    }
    for (const KeyStep& step : planPuttingBack(*before, lookAtUserKeyboards(*before))) {
        sendKeyStep(connection_, step);
    }
}

void KeyPoster::sendTo(xcb_window_t window, KeyWish wish) {
    const auto now = isReady() ? look() : std::nullopt;
    const auto place = now ? findKey(now->map, wish.keysym, now->state.group) : std::nullopt;
    if (!place) {
        return;
    }
    const unsigned modifiers = (wish.withControl ? controlModifier : 0U) | (wish.withShift ? shiftModifier : 0U);
    for (const std::uint8_t type : {std::uint8_t{XCB_KEY_PRESS}, std::uint8_t{XCB_KEY_RELEASE}}) {
        xcb_key_press_event_t event{};
        event.response_type = type;
        event.detail = place->keycode;
        event.time = XCB_CURRENT_TIME;
        event.root = connection_.root();
        event.event = window;
        event.state = static_cast<std::uint16_t>(modifiers | unsigned{place->group} << groupShift);
        event.same_screen = 1;
        std::array<char, 32> bytes{};
        static_assert(sizeof event == bytes.size());
        std::memcpy(bytes.data(), &event, sizeof event);
        // With an empty event mask, the server sends the event to the client that created the window.
        connection_.xcb().send_event(connection_.handle(), 0, window, XCB_EVENT_MASK_NO_EVENT, bytes.data());
    }
    settle();
}

std::optional<KeyboardSnapshot> KeyPoster::look() {
    if (!hasKeyboardExtension_) {
        return std::nullopt;
    }
    const auto devices =
        tellsDevicesApart_ ? receiveInputDevices(connection_, requestInputDevices(connection_)) : std::nullopt;
    // The XTEST device, whose keys will be pressed, may have a different map.
    const auto mapRequest = requestKeyboardMap(connection_, devices ? devices->programs : sessionKeyboard);
    const auto stateRequest = requestKeyboardState(connection_);
    const auto pressedRequest = connection_.xcb().query_keymap(connection_.handle());
    std::vector<InputDevice> asked;
    if (devices) {
        asked = devices->user;
        asked.push_back(devices->programs);
    }
    const std::vector<KeyboardRequest> keyRequests = requestKeysOf(connection_, asked);

    auto map = receiveKeyboardMap(connection_, mapRequest);
    const auto state = receiveKeyboardState(connection_, stateRequest);
    const auto pressed = connection_.wait<xcb_query_keymap_reply_t>(pressedRequest);
    std::vector<KeyboardDevice> keyboards;
    for (std::size_t index = 0; index < asked.size(); ++index) {
        keyboards.push_back({asked[index], receivePressedKeys(connection_, keyRequests[index])});
    }
    if (!map || !state || !pressed) {
        return std::nullopt;
    }
    KeyboardSnapshot snapshot{std::move(*map), *state, pressedKeysFrom(pressed->keys), {}, {}};
    if (!keyboards.empty()) {
        snapshot.pressedByPrograms = keyboards.back().pressed;
        keyboards.pop_back();
        snapshot.userKeyboards = std::move(keyboards);
    }
    return snapshot;
}

std::vector<KeyboardDevice> KeyPoster::lookAtUserKeyboards(const KeyboardSnapshot& before) {
    std::vector<KeyboardDevice> keyboards = before.userKeyboards;
    std::vector<InputDevice> devices;
    devices.reserve(keyboards.size());
    for (const KeyboardDevice& keyboard : keyboards) {
        devices.push_back(keyboard.identifier);
    }
    const std::vector<KeyboardRequest> requests = requestKeysOf(connection_, devices);
    for (std::size_t index = 0; index < keyboards.size(); ++index) {
        keyboards[index].pressed = receivePressedKeys(connection_, requests[index]);
    }
    return keyboards;
}

void KeyPoster::settle() {
    // Only the round trip matters. If the server does not reply, the connection gives it up.
    static_cast<void>(
        connection_.wait<xcb_get_input_focus_reply_t>(connection_.xcb().get_input_focus(connection_.handle())));
}

}  // namespace lomaris
