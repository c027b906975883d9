#pragma once

#include "text/text.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace lomaris {

/// The shortcut of a menu item, in the format of `AXMenuItemCmdChar` and `AXMenuItemCmdModifiers`. On this desktop
/// Control takes the place of Command: it is implied unless the modifiers contain `noCommand`.
struct MenuShortcut {
    Text character;
    std::int64_t modifiers = 0;

    friend bool operator==(const MenuShortcut&, const MenuShortcut&) = default;
};

/// Bits of `MenuShortcut::modifiers`.
namespace menu_modifier {
inline constexpr std::int64_t shift = 1;
inline constexpr std::int64_t option = 2;
/// Super or Meta.
inline constexpr std::int64_t control = 4;
inline constexpr std::int64_t noCommand = 8;
}  // namespace menu_modifier

/// Parses a reply of `Action.GetKeyBinding`: "c;<Alt>e:c;<Primary>c" (mnemonic, key sequence through the menus,
/// shortcut), "<Control>c", or "Ctrl+C" optionally followed by more shortcuts, separated by semicolons, of which the
/// first one counts. nullopt if there is no shortcut, its key is not a single character, or a modifier is unknown.
[[nodiscard]] std::optional<MenuShortcut> menuShortcutFromKeyBinding(std::string_view binding);

}  // namespace lomaris
