#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/object_source.h"
#include "platform/linux/dbus/bus_connection.h"

#include <span>
#include <string_view>

namespace lomaris {

/// True if this platform supports the attribute for AT-SPI objects.
[[nodiscard]] bool isObjectAttribute(std::string_view attribute);

/// Queues the calls for one attribute of an object. `answer` is set at once or inside the bus's `finish`, and must
/// outlive it. Sets `attributeUnsupported` if `isObjectAttribute` is false.
void queueAttribute(const ObjectSource& source, const ObjectReference& object, std::string_view attribute,
                    AttributeAnswer& answer);

/// The same for several attributes; `answers` has the same size and order. Calls no method of `Text` or `Value` if the
/// object lacks that interface. The contents of both spans must outlive the bus's `finish`.
void queueAttributes(const ObjectSource& source, const ObjectReference& object,
                     std::span<const std::string_view> attributes, std::span<AttributeAnswer> answers);

/// Performs an action of the object. `AXPress` is the object's first action; all others are `actionUnsupported`. Calls
/// `bus.finish`.
[[nodiscard]] AXError performObjectAction(BusConnection& bus, const ObjectReference& object, std::string_view action);

}  // namespace lomaris
