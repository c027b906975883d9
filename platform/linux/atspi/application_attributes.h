#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_connection.h"

#include <string_view>

namespace lomaris {

/// True if only the element of an application has the attribute: its windows, its menu bar, its focused element.
[[nodiscard]] bool isApplicationAttribute(std::string_view attribute);

/// Copies such an attribute of the application with this root object. Calls `bus.finish`.
[[nodiscard]] AttributeAnswer copyApplicationAttribute(BusConnection& bus, const ObjectReference& root,
                                                       std::string_view attribute);

}  // namespace lomaris
