#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/atspi_element.h"
#include "platform/linux/dbus/bus_connection.h"

#include <string_view>

namespace lomaris {

/// Searches the top four levels of a window for a showing menu bar. `noValue` if there is none: a hidden menu bar, as
/// in Firefox, does not count, as its menus are empty until the user opens them. Calls `bus.finish`.
[[nodiscard]] AttributeAnswer findMenuBar(BusConnection& bus, const ObjectReference& window);

/// Queues the calls for one attribute of a part of a menu bar. `answer` is set inside `bus.finish` and must outlive it.
void queueMenuAttribute(BusConnection& bus, const MenuPart& part, std::string_view attribute, AttributeAnswer& answer);

/// The same for the character and the modifiers of a menu item's shortcut; `noValue` if the item has none.
void queueMenuItemCharacter(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);
void queueMenuItemModifiers(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);

}  // namespace lomaris
