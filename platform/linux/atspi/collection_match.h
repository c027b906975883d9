#pragma once

#include "platform/linux/atspi/atspi.h"
#include "platform/linux/dbus/bus_connection.h"

namespace lomaris::atspi {

/// A call that lets the application look for the first object below `object` with all of the wanted states; null where
/// `object` cannot be called.
[[nodiscard]] BusMessage newGetMatches(BusConnection& connection, const ObjectReference& object, States wanted);

}  // namespace lomaris::atspi
