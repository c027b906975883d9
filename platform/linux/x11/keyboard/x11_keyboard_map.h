#pragma once

#include "platform/linux/x11/keyboard/key_codes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lomaris {

// The number of a key of an X keyboard (8 to 255), the number of a layout among those that the user switches between
// (0 to 3), and a set of the eight real modifiers (Shift is bit 0, Lock bit 1, Control bit 2).
using Keycode = std::uint8_t;
using KeyGroup = std::uint8_t;
using ModifierMask = std::uint8_t;

inline constexpr ModifierMask shiftModifier = 0x01;
inline constexpr ModifierMask controlModifier = 0x04;

/// What the keys of a keyboard mean without any modifier, in each layout, and which of them are modifiers.
class KeyboardMap {
public:
    /// Reads the reply to a request for the keysyms and the modifier map, all of its bytes. Nothing where it does not
    /// hold what it claims to hold.
    [[nodiscard]] static std::optional<KeyboardMap> fromReply(std::span<const std::byte> reply);

    /// The number of layouts; at least 1.
    [[nodiscard]] KeyGroup groupCount() const { return groupCount_; }

    /// The unmodified meaning of a key while `group` is in effect. A key with fewer layouts falls back on one that it
    /// has, as it says itself. 0 for a key without a meaning.
    [[nodiscard]] Keysym keysymOf(Keycode keycode, KeyGroup group) const;

    [[nodiscard]] ModifierMask modifiersOf(Keycode keycode) const { return keys_[keycode].modifiers; }

    /// Whether no modifier changes the meaning of the key, in any layout.
    [[nodiscard]] bool hasOneMeaning(Keycode keycode) const { return !keys_[keycode].hasFurtherLevels; }

    /// Whether the key has this unmodified meaning in any layout.
    [[nodiscard]] bool means(Keycode keycode, Keysym keysym) const;

private:
    struct Key {
        std::uint8_t groupInfo = 0;
        ModifierMask modifiers = 0;
        bool hasFurtherLevels = false;
        /// One for each layout of the key.
        std::vector<Keysym> keysyms;
    };

    std::array<Key, 256> keys_;
    KeyGroup groupCount_ = 1;
};

/// A key, and the layout in which it has the meaning that was looked for.
struct KeyPlace {
    Keycode keycode = 0;
    KeyGroup group = 0;

    friend bool operator==(const KeyPlace&, const KeyPlace&) = default;
};

/// The key with this unmodified meaning: in the layout in effect if it has one there, else in the first that does.
/// Nothing where no key has it; one that needs a modifier does not count.
[[nodiscard]] std::optional<KeyPlace> findKey(const KeyboardMap& map, Keysym keysym, KeyGroup groupInEffect);

/// The key that holds Control, or Shift, and no other modifier. nullopt if there is none.
[[nodiscard]] std::optional<Keycode> findControlKey(const KeyboardMap& map);
[[nodiscard]] std::optional<Keycode> findShiftKey(const KeyboardMap& map);

/// The key that holds Control even if it goes down while Shift is held: keymaps that switch layouts by Control and
/// Shift give it another meaning then. nullopt if there is none.
[[nodiscard]] std::optional<Keycode> findControlKeyBesideShift(const KeyboardMap& map);

/// The modifiers that Num Lock switches.
[[nodiscard]] ModifierMask numLockModifiers(const KeyboardMap& map);

/// Whether a key is a modifier for just as long as it is held: no lock, whose press means more than that.
[[nodiscard]] bool isHeldModifier(const KeyboardMap& map, Keycode keycode);

}  // namespace lomaris
