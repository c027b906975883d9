#pragma once

#include <cstdint>

#include <xcb/xcb.h>

namespace lomaris::test {

/// Holds keys and lets them go, on a connection of its own: as another program does, or as the user does on the
/// keyboard of the virtual desktop. Each call returns once the server has done it.
class KeyHand {
public:
    KeyHand();
    KeyHand(const KeyHand&) = delete;
    KeyHand& operator=(const KeyHand&) = delete;
    ~KeyHand();

    void holdAsProgram(std::uint8_t keycode) { move(XCB_KEY_PRESS, keycode, 0); }
    void releaseAsProgram(std::uint8_t keycode) { move(XCB_KEY_RELEASE, keycode, 0); }
    void holdAsUser(std::uint8_t keycode) { moveOnKeyboard(1, keycode); }
    void releaseAsUser(std::uint8_t keycode) { moveOnKeyboard(2, keycode); }

    /// Presses and releases the key that is Shift on every keyboard map of an X server. Every press has a time of its
    /// own, in milliseconds.
    void pressKeyOfUser();

private:
    void moveOnKeyboard(unsigned direction, std::uint8_t keycode);
    void move(unsigned event, std::uint8_t keycode, std::uint8_t device);

    xcb_connection_t* connection_;
    unsigned firstDeviceEvent_ = 0;
    std::uint8_t keyboard_ = 0;
};

}  // namespace lomaris::test
