#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/atspi_element.h"
#include "platform/linux/dbus/bus_connection.h"

#include <string_view>

namespace lomaris {

/// Looks for the menu bar near the top of a window. `noValue` where none shows: browsers keep one that is hidden and
/// whose items are not there before a person opens it. Finishes the bus's calls.
[[nodiscard]] AttributeAnswer findMenuBar(BusConnection& bus, const ObjectReference& window);

/// Queues the calls that one attribute of a part of a menu bar takes. `answer` is filled inside the bus's `finish` and
/// must live until then.
void queueMenuAttribute(BusConnection& bus, const MenuPart& part, std::string_view attribute, AttributeAnswer& answer);

/// The same for the character and the modifiers of a menu item's shortcut; no value where it has none.
void queueMenuItemCharacter(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);
void queueMenuItemModifiers(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);

}  // namespace lomaris
