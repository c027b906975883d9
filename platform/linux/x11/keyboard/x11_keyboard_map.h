#pragma once

#include "platform/linux/x11/keyboard/key_codes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lomaris {

/// The number of a key of an X keyboard, 8 to 255.
using Keycode = std::uint8_t;
/// The index of an XKB group, 0 to 3: one of the keyboard layouts that the user switches between.
using KeyGroup = std::uint8_t;
/// A set of the eight real modifiers: Shift is bit 0, Lock bit 1, Control bit 2.
using ModifierMask = std::uint8_t;

inline constexpr ModifierMask shiftModifier = 0x01;
inline constexpr ModifierMask controlModifier = 0x04;

/// The keymap of a device: the keysym of each key at shift level one, in each group, and the modifier map.
class KeyboardMap {
public:
    /// Parses all bytes of a reply to XkbGetMap with the parts KeySyms and ModifierMap. nullopt if the reply has other
    /// parts or is malformed.
    [[nodiscard]] static std::optional<KeyboardMap> fromReply(std::span<const std::byte> reply);

    /// The largest number of groups of a key; at least 1.
    [[nodiscard]] KeyGroup groupCount() const { return groupCount_; }

    /// The keysym of a key at shift level one if `group` is the effective group. If the key has fewer groups, its
    /// `groupInfo` determines which one is used (wrap, clamp or redirect). 0 for a key without keysyms.
    [[nodiscard]] Keysym keysymOf(Keycode keycode, KeyGroup group) const;

    /// The modifiers of a key in the modifier map.
    [[nodiscard]] ModifierMask modifiersOf(Keycode keycode) const { return keys_[keycode].modifiers; }

    /// True if the key has the same keysym at all shift levels of a group.
    [[nodiscard]] bool hasOneMeaning(Keycode keycode) const { return !keys_[keycode].hasFurtherLevels; }

    /// True if the key has this keysym at shift level one of any group.
    [[nodiscard]] bool means(Keycode keycode, Keysym keysym) const;

private:
    struct Key {
        std::uint8_t groupInfo = 0;
        ModifierMask modifiers = 0;
        bool hasFurtherLevels = false;
        /// The keysym at shift level one, for each group of the key.
        std::vector<Keysym> keysyms;
    };

    std::array<Key, 256> keys_;
    KeyGroup groupCount_ = 1;
};

/// A key, and the group in which it has the wanted keysym.
struct KeyPlace {
    Keycode keycode = 0;
    KeyGroup group = 0;

    friend bool operator==(const KeyPlace&, const KeyPlace&) = default;
};

/// The key with this keysym at shift level one, in the effective group or else in the first group that has it. nullopt
/// if there is none. The lowest keycode wins.
[[nodiscard]] std::optional<KeyPlace> findKey(const KeyboardMap& map, Keysym keysym, KeyGroup groupInEffect);

/// The key that sets Control, or Shift, and no other modifier while it is held. Prefers the left one. nullopt if there
/// is none.
[[nodiscard]] std::optional<Keycode> findControlKey(const KeyboardMap& map);
[[nodiscard]] std::optional<Keycode> findShiftKey(const KeyboardMap& map);

/// The same for Control, but without keys that have another keysym at another shift level: in keymaps that switch
/// groups with Control and Shift, such a key switches the group if it is pressed while Shift is held.
[[nodiscard]] std::optional<Keycode> findControlKeyBesideShift(const KeyboardMap& map);

/// The modifiers of the Num Lock key in the modifier map.
[[nodiscard]] ModifierMask numLockModifiers(const KeyboardMap& map);

/// True if the key sets its modifiers only while it is held: neither a lock key nor a latch key.
[[nodiscard]] bool isHeldModifier(const KeyboardMap& map, Keycode keycode);

}  // namespace lomaris
