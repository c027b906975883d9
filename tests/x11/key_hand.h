#pragma once

#include <cstdint>

#include <xcb/xcb.h>

namespace lomaris::test {

/// Presses and releases keys on its own connection: as another program (on the XTEST device), or as the user (on the
/// keyboard of the virtual desktop). Each call returns after the server has done it.
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

    /// Presses and releases the key that is Shift in every keymap of an X server. Every press has a different time in
    /// milliseconds.
    void pressKeyOfUser();

private:
    void moveOnKeyboard(unsigned direction, std::uint8_t keycode);
    void move(unsigned event, std::uint8_t keycode, std::uint8_t device);

    xcb_connection_t* connection_;
    unsigned firstDeviceEvent_ = 0;
    std::uint8_t keyboard_ = 0;
};

}  // namespace lomaris::test
