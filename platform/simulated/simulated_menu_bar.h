#pragma once

#include "platform/attribute_value.h"
#include "platform/simulated/simulated_element.h"
#include "text/text.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace lomaris {

/// Description of one menu item. The item lacks the attributes that are absent here.
///
///     {u"Copy", u"c"}                                                      Command+C
///     {.title = u"Copy Style", .commandCharacter = u"c", .modifiers = 1}   Shift+Command+C
///     {.title = u"Copy", .commandCharacter = u"c", .enabled = false}       greyed out
struct MenuItem {
    Text title;
    /// "AXMenuItemCmdChar".
    std::optional<Text> commandCharacter = std::nullopt;
    /// "AXMenuItemCmdModifiers": 0 is Command alone. May be a value of any kind.
    std::optional<AttributeValue> modifiers = AttributeValue(std::int64_t{0});
    /// "AXEnabled".
    std::optional<bool> enabled = true;
};

/// Description of one menu, with its title in the menu bar.
struct Menu {
    Text title;
    std::vector<MenuItem> items;
};

/// The elements of a menu bar as handles, in the order in which they were created, to script them further. Bar items,
/// menus and items have a role, bar items and items also a title. Pressing an item succeeds and has no effect at first.
///
///     menuBar.item(u"Edit", u"Copy").onAction(action::press, copiesSelectionOf(text));
struct SimulatedMenuBar {
    struct MadeMenu {
        Text title;
        /// The item in the bar, whose only child is the menu.
        SimulatedElement barItem;
        SimulatedElement menu;
        std::vector<Text> itemTitles;
        std::vector<SimulatedElement> items;
    };

    SimulatedElement bar;
    std::vector<MadeMenu> menus;

    /// The first item with this title in the first menu of that title that has one. Aborts the scenario if there is
    /// none.
    [[nodiscard]] SimulatedElement item(TextView menuTitle, TextView itemTitle) const;
};

}  // namespace lomaris
