#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_connection.h"

#include <functional>

namespace lomaris {

/// Calls `take` with the result code for a reply without the expected value: `failure` if it has values of another
/// type, otherwise the code of the error. If the error may mean either that the object no longer exists or that it
/// lacks the method (`BusFailure::unknownObject`), requests the states of the object first to find out. To be called
/// from a reply handler; `take` runs at once or later inside `bus.finish`.
void resolveFailure(BusConnection& bus, const ObjectReference& object, const BusReply& reply,
                    const std::function<void(AXError)>& take);

/// The same, but stores the code in `answer`, which must outlive `bus.finish`.
void answerFailure(BusConnection& bus, const ObjectReference& object, const BusReply& reply, AttributeAnswer& answer);

}  // namespace lomaris
