#include "platform/linux/x11/keyboard/x11_keyboard_map.h"

#include <algorithm>
#include <cstring>

namespace lomaris {

namespace {

constexpr Keysym numLockKeysym = 0xff7f;
constexpr Keysym leftShiftKeysym = 0xffe1;
constexpr Keysym leftControlKeysym = 0xffe3;

/// Caps Lock, Shift Lock, Num Lock, Scroll Lock, and the locks and latches of other levels and groups (keysymdef.h).
constexpr std::array<Keysym, 15> lockKeysyms{0xffe5, 0xffe6, 0xff7f, 0xff14, 0xfe01, 0xfe02, 0xfe04, 0xfe05,
                                             0xfe06, 0xfe07, 0xfe09, 0xfe0b, 0xfe0d, 0xfe0f, 0xfe12};

constexpr Keycode lastKeycode = 255;
constexpr Keycode firstKeycode = 8;

// Offsets in the reply to XkbGetMap, in bytes.
constexpr std::size_t headSize = 40;
constexpr std::size_t presentAt = 12;
constexpr std::size_t firstKeySymAt = 17;
constexpr std::size_t nKeySymsAt = 20;
constexpr std::size_t totalModMapKeysAt = 33;

// Bits of `present`: the parts that the reply has, in this order.
constexpr std::uint16_t keySymsPart = 1U << 1U;
constexpr std::uint16_t modifierMapPart = 1U << 2U;

// Bits of `groupInfo` of a key: its number of groups, and how a group that it lacks is replaced.
constexpr unsigned groupCountBits = 0x0f;
constexpr unsigned redirectGroupBits = 0x30;
constexpr unsigned redirectGroupShift = 4;
constexpr unsigned outOfRangeBits = 0xc0;
constexpr unsigned clampBit = 0x40;
constexpr unsigned redirectBit = 0x80;

/// Reads items from the front of a reply.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::byte> bytes) : rest_(bytes) {}

    /// nullopt if there are too few bytes left.
    template <typename Item>
    [[nodiscard]] std::optional<Item> take() {
        if (rest_.size() < sizeof(Item)) {
            return std::nullopt;
        }
        Item item{};
        std::memcpy(&item, rest_.data(), sizeof item);
        rest_ = rest_.subspan(sizeof item);
        return item;
    }

private:
    std::span<const std::byte> rest_;
};

/// The header of a key's keysyms (KeySymMap of the protocol).
struct KeySymMap {
    std::array<std::uint8_t, 4> ktIndex;
    std::uint8_t groupInfo;
    /// The number of keysyms (shift levels) of each group.
    std::uint8_t width;
    std::uint16_t nSyms;
};

/// An entry of the modifier map (KeyModMap of the protocol).
struct KeyModMap {
    std::uint8_t keycode;
    std::uint8_t mods;
};

std::uint8_t byteAt(std::span<const std::byte> bytes, std::size_t place) {
    return std::to_integer<std::uint8_t>(bytes[place]);
}

struct KeyMeanings {
    /// The first keysym of each group.
    std::vector<Keysym> keysyms;
    /// True if another keysym of a group differs from its first.
    bool hasFurtherLevels = false;
};

std::optional<KeyMeanings> takeMeanings(ByteReader& reader, const KeySymMap& keySymMap) {
    KeyMeanings meanings;
    std::vector<Keysym>& keysyms = meanings.keysyms;
    for (unsigned index = 0; index < keySymMap.nSyms; ++index) {
        const auto keysym = reader.take<Keysym>();
        if (!keysym) {
            return std::nullopt;
        }
        if (keySymMap.width > 0 && index % keySymMap.width == 0) {
            keysyms.push_back(*keysym);
        } else if (*keysym != 0 && !keysyms.empty() && *keysym != keysyms.back()) {
            meanings.hasFurtherLevels = true;
        }
    }
    keysyms.resize(std::min<std::size_t>(keysyms.size(), keySymMap.groupInfo & groupCountBits));
    return meanings;
}

/// The keys that set exactly this modifier while they are held, in ascending order.
std::vector<Keycode> modifierKeys(const KeyboardMap& map, ModifierMask modifier) {
    std::vector<Keycode> keys;
    for (unsigned number = firstKeycode; number <= lastKeycode; ++number) {
        const auto keycode = static_cast<Keycode>(number);
        if (map.modifiersOf(keycode) == modifier && isHeldModifier(map, keycode)) {
            keys.push_back(keycode);
        }
    }
    return keys;
}

/// The key with this keysym, otherwise the first one.
std::optional<Keycode> preferred(const std::vector<Keycode>& keys, const KeyboardMap& map, Keysym keysym) {
    if (keys.empty()) {
        return std::nullopt;
    }
    const auto found = std::find_if(keys.begin(), keys.end(), [&](Keycode key) { return map.means(key, keysym); });
    return found == keys.end() ? keys.front() : *found;
}

}  // namespace

std::optional<KeyboardMap> KeyboardMap::fromReply(std::span<const std::byte> reply) {
    if (reply.size() < headSize) {
        return std::nullopt;
    }
    std::uint16_t present = 0;
    std::memcpy(&present, reply.data() + presentAt, sizeof present);
    if (present != (keySymsPart | modifierMapPart)) {
        return std::nullopt;
    }
    const unsigned firstKey = byteAt(reply, firstKeySymAt);
    const unsigned keyCount = byteAt(reply, nKeySymsAt);
    KeyboardMap map;
    if (firstKey + keyCount > map.keys_.size()) {
        return std::nullopt;
    }
    ByteReader reader(reply.subspan(headSize));
    for (unsigned index = 0; index < keyCount; ++index) {
        const auto keySymMap = reader.take<KeySymMap>();
        auto meanings = keySymMap ? takeMeanings(reader, *keySymMap) : std::nullopt;
        if (!meanings) {
            return std::nullopt;
        }
        map.groupCount_ = std::max(map.groupCount_, static_cast<KeyGroup>(meanings->keysyms.size()));
        Key& key = map.keys_[firstKey + index];
        key.groupInfo = keySymMap->groupInfo;
        key.hasFurtherLevels = meanings->hasFurtherLevels;
        key.keysyms = std::move(meanings->keysyms);
    }
    for (unsigned index = 0; index < byteAt(reply, totalModMapKeysAt); ++index) {
        const auto entry = reader.take<KeyModMap>();
        if (!entry) {
            return std::nullopt;
        }
        map.keys_[entry->keycode].modifiers = entry->mods;
    }
    return map;
}

Keysym KeyboardMap::keysymOf(Keycode keycode, KeyGroup group) const {
    const Key& key = keys_[keycode];
    if (key.keysyms.empty()) {
        return 0;
    }
    const std::size_t count = key.keysyms.size();
    if (group < count) {
        return key.keysyms[group];
    }
    switch (key.groupInfo & outOfRangeBits) {
        case clampBit:
            return key.keysyms.back();
        case redirectBit: {
            const std::size_t redirected = (key.groupInfo & redirectGroupBits) >> redirectGroupShift;
            return key.keysyms[redirected < count ? redirected : 0];
        }
        default:
            return key.keysyms[group % count];
    }
}

bool KeyboardMap::means(Keycode keycode, Keysym keysym) const {
    const std::vector<Keysym>& keysyms = keys_[keycode].keysyms;
    return std::find(keysyms.begin(), keysyms.end(), keysym) != keysyms.end();
}

std::optional<KeyPlace> findKey(const KeyboardMap& map, Keysym keysym, KeyGroup groupInEffect) {
    std::vector<KeyGroup> groups{groupInEffect};
    for (KeyGroup group = 0; group < map.groupCount(); ++group) {
        groups.push_back(group);
    }
    for (const KeyGroup group : groups) {
        for (unsigned keycode = firstKeycode; keycode <= lastKeycode; ++keycode) {
            if (map.keysymOf(static_cast<Keycode>(keycode), group) == keysym) {
                return KeyPlace{static_cast<Keycode>(keycode), group};
            }
        }
    }
    return std::nullopt;
}

std::optional<Keycode> findControlKey(const KeyboardMap& map) {
    return preferred(modifierKeys(map, controlModifier), map, leftControlKeysym);
}

std::optional<Keycode> findShiftKey(const KeyboardMap& map) {
    return preferred(modifierKeys(map, shiftModifier), map, leftShiftKeysym);
}

std::optional<Keycode> findControlKeyBesideShift(const KeyboardMap& map) {
    std::vector<Keycode> keys = modifierKeys(map, controlModifier);
    std::erase_if(keys, [&](Keycode key) { return !map.hasOneMeaning(key); });
    return preferred(keys, map, leftControlKeysym);
}

ModifierMask numLockModifiers(const KeyboardMap& map) {
    unsigned modifiers = 0;
    for (unsigned number = firstKeycode; number <= lastKeycode; ++number) {
        const auto keycode = static_cast<Keycode>(number);
        if (map.means(keycode, numLockKeysym)) {
            modifiers |= map.modifiersOf(keycode);
        }
    }
    return static_cast<ModifierMask>(modifiers);
}

bool isHeldModifier(const KeyboardMap& map, Keycode keycode) {
    return map.modifiersOf(keycode) != 0 && std::none_of(lockKeysyms.begin(), lockKeysyms.end(),
                                                         [&](Keysym keysym) { return map.means(keycode, keysym); });
}

}  // namespace lomaris
