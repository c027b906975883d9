#pragma once

#include "text/text.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace lomaris {

/// The keys of a menu item as the logic reads them. The main modifier, Control on this desktop, takes the place of
/// Command and is implied; the modifiers tell the rest.
struct MenuShortcut {
    Text character;
    std::int64_t modifiers = 0;

    friend bool operator==(const MenuShortcut&, const MenuShortcut&) = default;
};

/// Bits of `MenuShortcut::modifiers`.
namespace menu_modifier {
inline constexpr std::int64_t shift = 1;
inline constexpr std::int64_t option = 2;
/// Super or Meta: the second modifier for commands.
inline constexpr std::int64_t control = 4;
inline constexpr std::int64_t noCommand = 8;
}  // namespace menu_modifier

/// Reads a key binding as the toolkits write them: "c;<Alt>e:c;<Primary>c" (mnemonic, way through the menus, shortcut),
/// "<Control>c", or "Ctrl+C" with further shortcuts behind semicolons. Nothing where there is no shortcut, its key is
/// not a single character, or a modifier is unknown.
[[nodiscard]] std::optional<MenuShortcut> menuShortcutFromKeyBinding(std::string_view binding);

}  // namespace lomaris
