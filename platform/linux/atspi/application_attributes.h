#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_connection.h"

#include <string_view>

namespace lomaris {

/// Whether the attribute is one that only the element of an application has: its windows, its menu bar
/// and what has the focus.
[[nodiscard]] bool isApplicationAttribute(std::string_view attribute);

/// Copies such an attribute of the application with this root object. Finishes the bus's calls.
[[nodiscard]] AttributeAnswer copyApplicationAttribute(BusConnection& bus, const ObjectReference& root,
                                                       std::string_view attribute);

}  // namespace lomaris
