#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_connection.h"

#include <functional>

namespace lomaris {

/// Hands the result code for a reply that holds no values to `take`. Where the error leaves open whether the object or
/// only the thing asked for is missing, the object is asked for its states first; `take` runs inside the bus's `finish`
/// either way.
void resolveFailure(BusConnection& bus, const ObjectReference& object, const BusReply& reply,
                    const std::function<void(AXError)>& take);

/// The same, into an answer that must outlive the bus's `finish`. A reply with values of another kind than those asked
/// for is a `failure`.
void answerFailure(BusConnection& bus, const ObjectReference& object, const BusReply& reply, AttributeAnswer& answer);

}  // namespace lomaris
