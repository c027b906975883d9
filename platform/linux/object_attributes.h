#pragma once

#include "platform/accessibility.h"
#include "platform/linux/bus_connection.h"

#include <string_view>

namespace lomaris {

/// Queues the calls that one attribute of an object takes. `answer` is filled inside the bus's `finish`, unless at
/// once, and must live until then. Attributes that this platform does not know are `attributeUnsupported`.
void queueAttribute(BusConnection& bus, const ObjectReference& object, std::string_view attribute,
                    AttributeAnswer& answer);

/// The same for whether the attribute can be set.
void queueSettable(BusConnection& bus, const ObjectReference& object, std::string_view attribute,
                   SettableAnswer& answer);

/// Performs an action of the object and answers its result code. Finishes the bus's calls.
[[nodiscard]] AXError performObjectAction(BusConnection& bus, const ObjectReference& object, std::string_view action);

}  // namespace lomaris
