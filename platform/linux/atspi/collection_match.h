#pragma once

#include "platform/linux/atspi/atspi.h"
#include "platform/linux/dbus/bus_connection.h"

namespace lomaris::atspi {

/// Returns a call of `Collection.GetMatches` for the first object below `object` that has all of the wanted states.
/// Null if the reference is not valid.
[[nodiscard]] BusMessage newGetMatches(BusConnection& connection, const ObjectReference& object, States wanted);

}  // namespace lomaris::atspi
