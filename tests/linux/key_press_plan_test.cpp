#include "platform/linux/x11/keyboard/key_press_plan.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>

namespace lomaris {

// GoogleTest finds these functions through their namespace.
static void PrintTo(const KeyMove& move, std::ostream* stream) {
    *stream << (move.direction == KeyMove::Direction::down ? "+" : "-") << int{move.keycode};
    if (move.userKeyboard) {
        *stream << " on " << *move.userKeyboard;
    }
}

static void PrintTo(const LockChange& change, std::ostream* stream) {
    *stream << "lock " << int{change.locked} << " of " << int{change.affected};
    if (change.lockedGroup) {
        *stream << ", group " << int{*change.lockedGroup};
    }
}

namespace test {
namespace {

using Steps = std::vector<KeyStep>;

constexpr Keycode backspace = 22;
constexpr Keycode control = 37;
constexpr Keycode shift = 50;
constexpr Keycode c = 54;
constexpr Keycode capsLock = 66;
constexpr Keycode numLock = 77;
constexpr Keysym backspaceKeysym = 0xff08;
constexpr Keysym cyrillicEs = 0x6d3;
constexpr InputDevice keyboard = 7;
constexpr InputDevice otherKeyboard = 9;

struct MapKey {
    Keycode keycode;
    /// The keysym at shift level one of each group.
    std::vector<Keysym> keysyms;
    ModifierMask modifiers = 0;
    std::uint8_t outOfRange = 0;
    /// The keysym at shift level two of each group.
    Keysym shifted = 'X';
};

void append(std::vector<std::byte>& bytes, const void* data, std::size_t size) {
    const auto* const begin = static_cast<const std::byte*>(data);
    bytes.insert(bytes.end(), begin, begin + size);
}

/// A reply to XkbGetMap with these keys, in ascending order, with two keysyms in each group.
std::vector<std::byte> mapReply(const std::vector<MapKey>& keys) {
    std::vector<std::byte> bytes(40);
    const std::uint16_t present = 6;
    std::memcpy(bytes.data() + 12, &present, sizeof present);
    bytes[17] = std::byte{8};
    bytes[20] = std::byte{248};
    std::vector<std::byte> modifiers;
    auto key = keys.begin();
    for (unsigned keycode = 8; keycode < 256; ++keycode) {
        std::vector<Keysym> keysyms;
        std::uint8_t groupInfo = 0;
        if (key != keys.end() && key->keycode == keycode) {
            for (const Keysym keysym : key->keysyms) {
                keysyms.insert(keysyms.end(), {keysym, key->shifted});
            }
            groupInfo = static_cast<std::uint8_t>(key->keysyms.size() | key->outOfRange);
            if (key->modifiers != 0) {
                modifiers.push_back(std::byte{key->keycode});
                modifiers.push_back(std::byte{key->modifiers});
            }
            ++key;
        }
        const std::uint8_t head[6]{0, 0, 0, 0, groupInfo, 2};
        const auto count = static_cast<std::uint16_t>(keysyms.size());
        append(bytes, head, sizeof head);
        append(bytes, &count, sizeof count);
        append(bytes, keysyms.data(), keysyms.size() * sizeof(Keysym));
    }
    bytes[33] = static_cast<std::byte>(modifiers.size() / 2);
    bytes.insert(bytes.end(), modifiers.begin(), modifiers.end());
    return bytes;
}

KeyboardMap mapOf(const std::vector<MapKey>& keys) { return KeyboardMap::fromReply(mapReply(keys)).value(); }

/// A key with the same keysym at both shift levels.
MapKey modifierKey(Keycode keycode, Keysym keysym, ModifierMask modifiers) {
    return {.keycode = keycode, .keysyms = {keysym}, .modifiers = modifiers, .shifted = keysym};
}

const std::vector<MapKey> latinKeys{{backspace, {backspaceKeysym}}, modifierKey(control, 0xffe3, 4),
                                    modifierKey(shift, 0xffe1, 1),  {c, {'c'}},
                                    {capsLock, {0xffe5}, 2},        {numLock, {0xff7f}, 16}};

KeyboardSnapshot quietKeyboard(std::vector<MapKey> keys = latinKeys) {
    return {.map = mapOf(keys), .state = {}, .pressed = {}, .userKeyboards = {{keyboard, {}}}, .pressedByPrograms = {}};
}

KeyStep down(Keycode keycode, std::optional<InputDevice> device = std::nullopt) {
    return KeyMove{KeyMove::Direction::down, keycode, device};
}
KeyStep up(Keycode keycode, std::optional<InputDevice> device = std::nullopt) {
    return KeyMove{KeyMove::Direction::up, keycode, device};
}
KeyStep locks(ModifierMask affected, ModifierMask locked, std::optional<KeyGroup> group = std::nullopt) {
    LockChange change;
    change.affected = affected;
    change.locked = locked;
    change.lockedGroup = group;
    return change;
}

const KeyWish copyWish{.keysym = 'c', .withControl = true};
const KeyWish terminalCopyWish{.keysym = 'c', .withControl = true, .withShift = true};
const KeyWish deleteWish{.keysym = backspaceKeysym};
const Steps terminalCopySteps{down(shift), down(control), down(c), up(c), up(control), up(shift)};

TEST(KeyPressPlan, PressesAndReleasesInTurn) {
    EXPECT_EQ(planKeyPress(quietKeyboard(), copyWish), (Steps{down(control), down(c), up(c), up(control)}));
    EXPECT_EQ(planKeyPress(quietKeyboard(), deleteWish), (Steps{down(backspace), up(backspace)}));
    EXPECT_EQ(planPuttingBack(quietKeyboard(), {{keyboard, {}}}), Steps());
}

TEST(KeyPressPlan, IsNoneIfTheMapLacksAKey) {
    EXPECT_EQ(planKeyPress(quietKeyboard({{control, {0xffe3}, 4}}), copyWish), std::nullopt);
    EXPECT_EQ(planKeyPress(quietKeyboard({{c, {'c'}}}), copyWish), std::nullopt);
    // A Control key that also sets another modifier would set that one too.
    EXPECT_EQ(planKeyPress(quietKeyboard({{control, {0xffe3}, 5}, {c, {'c'}}}), copyWish), std::nullopt);
}

TEST(KeyPressPlan, HoldsShiftAroundControl) {
    EXPECT_EQ(planKeyPress(quietKeyboard(), terminalCopyWish), terminalCopySteps);
}

TEST(KeyPressPlan, ReleasesHeldModifiersBeforeItHoldsItsOwn) {
    KeyboardSnapshot before = quietKeyboard();
    before.state.baseModifiers = 1;
    before.pressed.set(shift);
    before.userKeyboards = {{keyboard, PressedKeys().set(shift)}};
    Steps expected{up(shift)};
    expected.insert(expected.end(), terminalCopySteps.begin(), terminalCopySteps.end());
    EXPECT_EQ(planKeyPress(before, terminalCopyWish), expected);
    EXPECT_EQ(planPuttingBack(before, before.userKeyboards), (Steps{up(shift, keyboard), down(shift, keyboard)}));
}

TEST(KeyPressPlan, UnlocksCapsLockForAPressWithShift) {
    KeyboardSnapshot before = quietKeyboard();
    before.state.lockedModifiers = 2;
    Steps expected{locks(2, 0)};
    expected.insert(expected.end(), terminalCopySteps.begin(), terminalCopySteps.end());
    expected.push_back(locks(2, 2));
    EXPECT_EQ(planKeyPress(before, terminalCopyWish), expected);
}

TEST(KeyPressPlan, LocksTheGroupForAPressWithShift) {
    KeyboardSnapshot before =
        quietKeyboard({modifierKey(control, 0xffe3, 4), modifierKey(shift, 0xffe1, 1), {c, {cyrillicEs, 'c'}}});
    Steps expected{locks(0, 0, KeyGroup{1})};
    expected.insert(expected.end(), terminalCopySteps.begin(), terminalCopySteps.end());
    expected.push_back(locks(0, 0, KeyGroup{0}));
    EXPECT_EQ(planKeyPress(before, terminalCopyWish), expected);
}

TEST(KeyPressPlan, NeedsAShiftKeyOnlyForShift) {
    const std::vector<MapKey> keys{modifierKey(control, 0xffe3, 4), {c, {'c'}}};
    EXPECT_EQ(planKeyPress(quietKeyboard(keys), terminalCopyWish), std::nullopt);
    EXPECT_EQ(planKeyPress(quietKeyboard(keys), copyWish), (Steps{down(control), down(c), up(c), up(control)}));
}

// If Shift is held, such a key switches groups: the letter would be pressed with Shift alone.
TEST(KeyPressPlan, HoldsNoControlKeyThatShiftChanges) {
    constexpr Keycode rightControl = 105;
    const MapKey switching{.keycode = control, .keysyms = {0xffe3}, .modifiers = 4, .shifted = 0xfe08};
    std::vector<MapKey> keys{switching, modifierKey(shift, 0xffe1, 1), {c, {'c'}}};
    EXPECT_EQ(planKeyPress(quietKeyboard(keys), terminalCopyWish), std::nullopt);
    EXPECT_EQ(planKeyPress(quietKeyboard(keys), copyWish), (Steps{down(control), down(c), up(c), up(control)}));
    keys.push_back(modifierKey(rightControl, 0xffe4, 4));
    EXPECT_EQ(planKeyPress(quietKeyboard(keys), terminalCopyWish),
              (Steps{down(shift), down(rightControl), down(c), up(c), up(rightControl), up(shift)}));
}

TEST(KeyPressPlan, RestoresOnlyModifiersThatAreStillHeld) {
    KeyboardSnapshot before = quietKeyboard();
    before.state.baseModifiers = 1;
    before.pressed.set(shift);
    before.userKeyboards = {{keyboard, PressedKeys().set(shift)}, {otherKeyboard, {}}};
    EXPECT_EQ(planKeyPress(before, deleteWish), (Steps{up(shift), down(backspace), up(backspace)}));
    EXPECT_EQ(planPuttingBack(before, before.userKeyboards), (Steps{up(shift, keyboard), down(shift, keyboard)}));
    EXPECT_EQ(planPuttingBack(before, {{keyboard, {}}, {otherKeyboard, {}}}), Steps());
    // If the server does not support XInput 2.
    before.userKeyboards.clear();
    EXPECT_EQ(planPuttingBack(before, {}), Steps());
}

TEST(KeyPressPlan, RestoresModifiersThatAnotherProgramHolds) {
    KeyboardSnapshot before = quietKeyboard();
    before.state.baseModifiers = 1;
    before.pressed.set(shift);
    before.pressedByPrograms.set(shift);
    EXPECT_EQ(planPuttingBack(before, before.userKeyboards), Steps{down(shift)});
    before.state.baseModifiers = 0;
    EXPECT_EQ(planKeyPress(before, deleteWish), (Steps{up(shift), down(backspace), up(backspace)}));
    EXPECT_EQ(planPuttingBack(before, before.userKeyboards), Steps());
}

TEST(KeyPressPlan, ReleasesTheKeyItselfIfItIsHeld) {
    KeyboardSnapshot before = quietKeyboard();
    before.pressed.set(backspace);
    before.userKeyboards = {{keyboard, {}}, {otherKeyboard, PressedKeys().set(backspace)}};
    EXPECT_EQ(planKeyPress(before, deleteWish),
              (Steps{up(backspace, otherKeyboard), up(backspace), down(backspace), up(backspace)}));
    EXPECT_EQ(planPuttingBack(before, before.userKeyboards), Steps());
}

TEST(KeyPressPlan, RestoresAllLocksAndKeepsNumLock) {
    KeyboardSnapshot before = quietKeyboard();
    before.state.lockedModifiers = 2 | 16;
    EXPECT_EQ(planKeyPress(before, deleteWish), (Steps{locks(2, 0), down(backspace), up(backspace), locks(2, 2)}));
    before.state.lockedModifiers = 16;
    EXPECT_EQ(planKeyPress(before, deleteWish), (Steps{down(backspace), up(backspace)}));
    before.state.latchedModifiers = 1;
    EXPECT_EQ(planKeyPress(before, deleteWish), (Steps{locks(0, 0), down(backspace), up(backspace), locks(0, 0)}));
}

TEST(KeyPressPlan, NeverPressesOrReleasesALockKey) {
    KeyboardSnapshot before = quietKeyboard();
    before.state.baseModifiers = 2;
    before.pressed.set(capsLock);
    before.userKeyboards.front().pressed.set(capsLock);
    EXPECT_EQ(planKeyPress(before, deleteWish), (Steps{down(backspace), up(backspace)}));
    EXPECT_EQ(planPuttingBack(before, before.userKeyboards), Steps());
}

TEST(KeyPressPlan, LocksTheGroupThatHasTheKey) {
    KeyboardSnapshot before =
        quietKeyboard({{backspace, {backspaceKeysym}}, {control, {0xffe3}, 4}, {c, {cyrillicEs, 'c'}}});
    EXPECT_EQ(planKeyPress(before, copyWish),
              (Steps{locks(0, 0, KeyGroup{1}), down(control), down(c), up(c), up(control), locks(0, 0, KeyGroup{0})}));
    // If the group is in effect already, and if the key has the same keysym in every group.
    before.state.group = 1;
    before.state.lockedGroup = 1;
    EXPECT_EQ(planKeyPress(before, copyWish), (Steps{down(control), down(c), up(c), up(control)}));
    EXPECT_EQ(planKeyPress(before, deleteWish), (Steps{down(backspace), up(backspace)}));
    // A base group, set by a held key, is subtracted from the group to lock.
    before.state = {.group = 0, .baseGroup = 1, .lockedGroup = 1};
    EXPECT_EQ(planKeyPress(before, copyWish),
              (Steps{locks(0, 0, KeyGroup{0}), down(control), down(c), up(c), up(control), locks(0, 0, KeyGroup{1})}));
}

TEST(KeyboardMap, ReplacesAMissingGroupAsTheKeyDefines) {
    const KeyboardMap map = mapOf({{10, {'a', 'b'}}, {11, {'a', 'b'}, 0, 0x40}, {12, {'a', 'b'}, 0, 0x80 | 0x10}});
    EXPECT_EQ(map.keysymOf(10, 2), Keysym{'a'});
    EXPECT_EQ(map.keysymOf(11, 2), Keysym{'b'});
    EXPECT_EQ(map.keysymOf(12, 2), Keysym{'b'});
    EXPECT_EQ(map.keysymOf(13, 0), Keysym{0});
}

TEST(KeyboardMap, RejectsATruncatedReply) {
    const std::vector<std::byte> whole = mapReply(latinKeys);
    EXPECT_TRUE(KeyboardMap::fromReply(whole).has_value());
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(KeyboardMap::fromReply(std::span(whole).first(size)).has_value()) << size;
    }
}

}  // namespace
}  // namespace test
}  // namespace lomaris
