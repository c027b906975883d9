#pragma once

#include "platform/linux/x11/keyboard/x11_keyboard_map.h"

#include <bitset>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace lomaris {

using PressedKeys = std::bitset<256>;
using InputDevice = std::uint16_t;

/// The XKB state of the session's keyboard (the core keyboard), as key events have it.
struct KeyboardState {
    /// The modifiers of the keys that are held.
    ModifierMask baseModifiers = 0;
    ModifierMask latchedModifiers = 0;
    ModifierMask lockedModifiers = 0;
    /// The effective group: the sum of base, latched and locked group, wrapped into the groups of the map.
    KeyGroup group = 0;
    int baseGroup = 0;
    int latchedGroup = 0;
    KeyGroup lockedGroup = 0;
};

/// One of the devices that the session's keyboard combines (a slave keyboard of XInput 2).
struct KeyboardDevice {
    InputDevice identifier = 0;
    PressedKeys pressed;
};

/// The state that a key press depends on, read at one time.
struct KeyboardSnapshot {
    KeyboardMap map;
    KeyboardState state;
    /// Keys that are down on any device.
    PressedKeys pressed;
    /// The devices of the user, and the keys that are down on the XTEST device. Empty if the server does not support
    /// XInput 2.
    std::vector<KeyboardDevice> userKeyboards;
    PressedKeys pressedByPrograms;
};

/// A press or release of a key: on the XTEST device, or on one of the user's devices.
struct KeyMove {
    enum class Direction : std::uint8_t { up, down };

    Direction direction = Direction::up;
    Keycode keycode = 0;
    std::optional<InputDevice> userKeyboard;

    friend bool operator==(const KeyMove&, const KeyMove&) = default;
};

/// Sets locked modifiers and the locked group, and clears all latches (XkbLatchLockState).
struct LockChange {
    /// The modifiers whose lock is set to that in `locked`; the others do not change.
    ModifierMask affected = 0;
    ModifierMask locked = 0;
    std::optional<KeyGroup> lockedGroup;

    friend bool operator==(const LockChange&, const LockChange&) = default;
};

using KeyStep = std::variant<KeyMove, LockChange>;

/// A key to press, and the modifiers to press it with.
struct KeyWish {
    Keysym keysym = 0;
    bool withControl = false;
    bool withShift = false;

    friend bool operator==(const KeyWish&, const KeyWish&) = default;
};

/// The steps that press and release a key with exactly the modifiers of the wish, and undo all their other effects
/// except one: held modifiers are released at the end, because `planPuttingBack` needs the state after the press.
/// nullopt if the map lacks a key.
///
/// - Held modifiers are released on the XTEST device: they are then released in the state of the session's keyboard,
///   while the user's device still has them as pressed.
/// - If the key itself is held, it is released on every device that holds it, as it could not be pressed otherwise.
/// - Locked modifiers are unlocked for the press, except Num Lock, which does not affect the keys of the tool. Latches
///   are cleared, as by any key press. If the keysym is in another group, that group is locked for the press.
/// - Lock keys are never pressed or released, as that would change the lock.
[[nodiscard]] std::optional<std::vector<KeyStep>> planKeyPress(const KeyboardSnapshot& before, KeyWish wish);

/// The steps that restore the modifiers that the press released. `after` has the user's devices after the press: a key
/// that is still held is released and pressed on the same device, so that no other device holds it when the user
/// releases it. Keys that were down on the XTEST device are pressed again. If the server does not support XInput 2,
/// nothing is restored, because a key that is pressed on the XTEST device would never be released.
[[nodiscard]] std::vector<KeyStep> planPuttingBack(const KeyboardSnapshot& before,
                                                   const std::vector<KeyboardDevice>& after);

}  // namespace lomaris
