#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/object_source.h"
#include "platform/linux/dbus/bus_connection.h"

#include <span>
#include <string_view>

namespace lomaris {

/// Whether this platform knows the attribute for objects.
[[nodiscard]] bool isObjectAttribute(std::string_view attribute);

/// Queues the calls that one attribute of an object takes. `answer` is filled inside the bus's `finish`, unless at
/// once, and must live until then. Attributes that this platform does not know are `attributeUnsupported`.
void queueAttribute(const ObjectSource& source, const ObjectReference& object, std::string_view attribute,
                    AttributeAnswer& answer);

/// The same for several attributes, each with the answer at its place. An object that offers no text is not asked for
/// one. What the spans point to must live until the bus's `finish` ends.
void queueAttributes(const ObjectSource& source, const ObjectReference& object,
                     std::span<const std::string_view> attributes, std::span<AttributeAnswer> answers);

/// Performs an action of the object and answers its result code. Finishes the bus's calls.
[[nodiscard]] AXError performObjectAction(BusConnection& bus, const ObjectReference& object, std::string_view action);

}  // namespace lomaris
