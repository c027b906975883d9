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

/// The session's keyboard as a whole: what a key event would carry now.
struct KeyboardState {
    /// Of the keys that are held.
    ModifierMask heldModifiers = 0;
    ModifierMask latchedModifiers = 0;
    ModifierMask lockedModifiers = 0;
    /// The layout in effect, and its parts: held, latched and locked ones add up to it.
    KeyGroup group = 0;
    int heldGroup = 0;
    int latchedGroup = 0;
    KeyGroup lockedGroup = 0;
};

/// One of the keyboards that the session's keyboard is made of.
struct KeyboardDevice {
    InputDevice identifier = 0;
    PressedKeys pressed;
};

/// Everything that a key press depends on, read at one time.
struct KeyboardSnapshot {
    KeyboardMap map;
    KeyboardState state;
    /// Keys that are down, on whatever keyboard.
    PressedKeys pressed;
    /// The keyboards of the user, and the keys that programs hold down. Empty where the server cannot tell keyboards
    /// apart.
    std::vector<KeyboardDevice> userKeyboards;
    PressedKeys pressedByPrograms;
};

/// A key going down or up: on the programs' keyboard, or as if the user moved it on the keyboard named.
struct KeyMove {
    enum class Direction : std::uint8_t { up, down };

    Direction direction = Direction::up;
    Keycode keycode = 0;
    std::optional<InputDevice> userKeyboard;

    friend bool operator==(const KeyMove&, const KeyMove&) = default;
};

/// Sets locked modifiers and the locked layout, and drops all latches.
struct LockChange {
    /// The modifiers that are set; the others stay as they are.
    ModifierMask affected = 0;
    ModifierMask locked = 0;
    std::optional<KeyGroup> lockedGroup;

    friend bool operator==(const LockChange&, const LockChange&) = default;
};

using KeyStep = std::variant<KeyMove, LockChange>;

/// The key to press, and the modifiers to press it with.
struct KeyWish {
    Keysym keysym = 0;
    bool withControl = false;
    bool withShift = false;

    friend bool operator==(const KeyWish&, const KeyWish&) = default;
};

/// The steps that press and release a key with exactly the modifiers of the wish. Everything in them is undone by them
/// but one: modifiers that were held are up at the end, as `planPuttingBack` needs a later look. Nothing where the map
/// lacks a key.
///
/// - Modifiers that are held are released on the programs' keyboard: the session then takes them for released, while
/// the
///   user's keyboard still knows whether they are held.
/// - Where the key itself is held, it is released wherever it is; it could not go down otherwise.
/// - Locked modifiers are unlocked for the press, except Num Lock, which changes the meaning of no key of the tool.
///   Latches are used up, as by any key. Where the key belongs to another layout, that one is locked for the press.
/// - The lock keys themselves are never moved, as that would turn the lock.
[[nodiscard]] std::optional<std::vector<KeyStep>> planKeyPress(const KeyboardSnapshot& before, KeyWish wish);

/// The steps that put back the modifiers that the press released. `after` are the user's keyboards after the press:
/// what is still held there goes up and down on that very keyboard, so that no other holds it when the user lets it go.
/// What other programs held goes down again. Where the server cannot tell keyboards apart, nothing is put back, as then
/// nobody would release it.
[[nodiscard]] std::vector<KeyStep> planPuttingBack(const KeyboardSnapshot& before,
                                                   const std::vector<KeyboardDevice>& after);

}  // namespace lomaris
