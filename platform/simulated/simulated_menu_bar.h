#pragma once

#include "platform/attribute_value.h"
#include "platform/simulated/simulated_element.h"
#include "text/text.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace lomaris {

/// One item of a menu to be made. What is absent is an attribute that the item does not have.
///
///     {u"Copy", u"c"}                                                      Command+C
///     {.title = u"Copy Style", .commandCharacter = u"c", .modifiers = 1}   Shift+Command+C
///     {.title = u"Copy", .commandCharacter = u"c", .enabled = false}       greyed out
struct MenuItem {
    Text title;
    /// "AXMenuItemCmdChar".
    std::optional<Text> commandCharacter = std::nullopt;
    /// "AXMenuItemCmdModifiers": 0 is Command alone; any other kind of value may stand here.
    std::optional<AttributeValue> modifiers = AttributeValue(std::int64_t{0});
    /// "AXEnabled".
    std::optional<bool> enabled = true;
};

/// One menu of a menu bar to be made, under its title in the bar.
struct Menu {
    Text title;
    std::vector<MenuItem> items;
};

/// A menu bar as it was made: the handles of its elements, in the order of their making, by which they can be scripted
/// further. Bar items, menus and items answer their role, and bar items and items their title. Pressing an item
/// succeeds and does nothing at first.
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

    /// The first item with this title in the first menu with that title that has one; the scenario is wrong where there
    /// is none.
    [[nodiscard]] SimulatedElement item(TextView menuTitle, TextView itemTitle) const;
};

}  // namespace lomaris
