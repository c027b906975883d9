#include "platform/linux/x11/keyboard/key_press_plan.h"

namespace lomaris {

namespace {

using Direction = KeyMove::Direction;

/// The held modifier keys, which are to be released, in ascending order.
std::vector<Keycode> heldModifierKeys(const KeyboardSnapshot& before) {
    std::vector<Keycode> keys;
    for (std::size_t number = 0; number < before.pressed.size(); ++number) {
        const auto keycode = static_cast<Keycode>(number);
        if (before.pressed[number] && isHeldModifier(before.map, keycode)) {
            keys.push_back(keycode);
        }
    }
    return keys;
}

void releaseKeyItself(const KeyboardSnapshot& before, Keycode keycode, std::vector<KeyStep>& steps) {
    if (!before.pressed[keycode]) {
        return;
    }
    for (const KeyboardDevice& keyboard : before.userKeyboards) {
        if (keyboard.pressed[keycode]) {
            steps.emplace_back(KeyMove{Direction::up, keycode, keyboard.identifier});
        }
    }
    steps.emplace_back(KeyMove{Direction::up, keycode, std::nullopt});
}

/// The locked group with which `wanted` is the effective group once the latches are cleared.
KeyGroup lockedGroupFor(KeyGroup wanted, const KeyboardSnapshot& before) {
    const int count = before.map.groupCount();
    const int locked = (wanted - before.state.baseGroup) % count;
    return static_cast<KeyGroup>(locked < 0 ? locked + count : locked);
}

struct Locks {
    std::optional<LockChange> set;
    std::optional<LockChange> restore;
};

Locks planLocks(const KeyboardSnapshot& before, KeyGroup wantedGroup) {
    const KeyboardState& state = before.state;
    const auto unlocked = static_cast<ModifierMask>(state.lockedModifiers & ~numLockModifiers(before.map));
    const bool changesGroup = wantedGroup != state.group || state.latchedGroup != 0;
    if (unlocked == 0 && state.latchedModifiers == 0 && !changesGroup) {
        return {};
    }
    Locks locks{LockChange(), LockChange()};
    locks.set->affected = unlocked;
    locks.restore->affected = unlocked;
    locks.restore->locked = unlocked;
    if (changesGroup) {
        locks.set->lockedGroup = lockedGroupFor(wantedGroup, before);
        locks.restore->lockedGroup = state.lockedGroup;
    }
    return locks;
}

/// The modifier keys for the wish, in the order in which they are pressed. nullopt if the map lacks one.
std::optional<std::vector<Keycode>> keysOfModifiers(const KeyboardMap& map, KeyWish wish) {
    std::vector<std::optional<Keycode>> found;
    if (wish.withShift) {
        found.push_back(findShiftKey(map));
    }
    if (wish.withControl) {
        found.push_back(wish.withShift ? findControlKeyBesideShift(map) : findControlKey(map));
    }
    std::vector<Keycode> keys;
    for (const auto& key : found) {
        if (!key) {
            return std::nullopt;
        }
        keys.push_back(*key);
    }
    return keys;
}

}  // namespace

std::optional<std::vector<KeyStep>> planKeyPress(const KeyboardSnapshot& before, KeyWish wish) {
    const auto place = findKey(before.map, wish.keysym, before.state.group);
    const auto modifiers = keysOfModifiers(before.map, wish);
    if (!place || !modifiers) {
        return std::nullopt;
    }
    std::vector<KeyStep> steps;
    for (const Keycode keycode : heldModifierKeys(before)) {
        steps.emplace_back(KeyMove{Direction::up, keycode, std::nullopt});
    }
    releaseKeyItself(before, place->keycode, steps);
    const Locks locks = planLocks(before, place->group);
    if (locks.set) {
        steps.emplace_back(*locks.set);
    }
    for (const Keycode modifier : *modifiers) {
        steps.emplace_back(KeyMove{Direction::down, modifier, std::nullopt});
    }
    steps.emplace_back(KeyMove{Direction::down, place->keycode, std::nullopt});
    steps.emplace_back(KeyMove{Direction::up, place->keycode, std::nullopt});
    const std::vector<Keycode> lastFirst(modifiers->rbegin(), modifiers->rend());
    for (const Keycode modifier : lastFirst) {
        steps.emplace_back(KeyMove{Direction::up, modifier, std::nullopt});
    }
    if (locks.restore) {
        steps.emplace_back(*locks.restore);
    }
    return steps;
}

std::vector<KeyStep> planPuttingBack(const KeyboardSnapshot& before, const std::vector<KeyboardDevice>& after) {
    std::vector<KeyStep> steps;
    for (const Keycode keycode : heldModifierKeys(before)) {
        // A key may be down without setting its modifier, if another program left it in that state.
        if ((before.map.modifiersOf(keycode) & before.state.baseModifiers) == 0) {
            continue;
        }
        for (const KeyboardDevice& keyboard : after) {
            if (keyboard.pressed[keycode]) {
                steps.emplace_back(KeyMove{Direction::up, keycode, keyboard.identifier});
                steps.emplace_back(KeyMove{Direction::down, keycode, keyboard.identifier});
            }
        }
        if (before.pressedByPrograms[keycode]) {
            steps.emplace_back(KeyMove{Direction::down, keycode, std::nullopt});
        }
    }
    return steps;
}

}  // namespace lomaris
