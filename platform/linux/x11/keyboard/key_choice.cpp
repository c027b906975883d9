#include "platform/linux/x11/keyboard/key_choice.h"

#include "platform/linux/x11/keyboard/key_codes.h"

namespace lomaris {

using applications::EditingKeys;

std::optional<KeyWish> chooseKeys(KeyStroke keyStroke, EditingKeys keys) {
    const auto keysym = keysymOfKeyCode(keyStroke.keyCode);
    if (!keysym || (keyStroke.flags & ~commandFlag) != 0) {
        return std::nullopt;
    }
    const KeyWish ordinary{.keysym = *keysym, .withControl = (keyStroke.flags & commandFlag) != 0};
    switch (keys) {
        case EditingKeys::control:
            return ordinary;
        case EditingKeys::controlShiftToCopy:
            if (ordinary == KeyWish{.keysym = 'c', .withControl = true}) {
                return KeyWish{.keysym = 'c', .withControl = true, .withShift = true};
            }
            return std::nullopt;
        case EditingKeys::none:
            return std::nullopt;
    }
    return std::nullopt;
}

EditingKeys editingKeysOf(const std::optional<KeyReceiver>& receiver, const TerminalQuery& isTerminalFocused) {
    if (!receiver) {
        return EditingKeys::control;
    }
    if (receiver->application != nullptr) {
        return receiver->application->keys;
    }
    const bool isTerminal = receiver->processIdentifier && isTerminalFocused(*receiver->processIdentifier);
    return isTerminal ? EditingKeys::none : EditingKeys::control;
}

std::optional<KeyWish> keysStillRight(const PlannedStroke& stroke, const std::optional<KeyReceiver>& receiver,
                                      const TerminalQuery& isTerminalFocused) {
    const auto planned = chooseKeys(stroke.keyStroke, stroke.keys);
    if (receiver == stroke.receiver) {
        return planned;
    }
    const auto now = chooseKeys(stroke.keyStroke, editingKeysOf(receiver, isTerminalFocused));
    return now == planned ? now : std::nullopt;
}

}  // namespace lomaris
