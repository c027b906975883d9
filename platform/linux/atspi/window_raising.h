#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_connection.h"
#include "text/text.h"

#include <functional>

namespace lomaris {

/// Activates the window of the process with this title, or its only window regardless of the title. Returns true if
/// that window is active afterwards. Provided by the window system, as AT-SPI has no such call. Main thread.
using WindowRaiser = std::function<bool(ProcessIdentifier processIdentifier, TextView title)>;

/// True if the object is a window: a child of the root object of its application. Calls `bus.finish`.
[[nodiscard]] bool isWindow(BusConnection& bus, const ObjectReference& object);

/// Raises a window. `cannotComplete` if it is not active afterwards. Calls `bus.finish`.
[[nodiscard]] AXError raiseWindow(BusConnection& bus, const ObjectReference& window,
                                  ProcessIdentifier processIdentifier, const WindowRaiser& raiser);

/// Gives an object the focus. `cannotComplete` if it does not have it afterwards. Calls `bus.finish`.
[[nodiscard]] AXError grabFocus(BusConnection& bus, const ObjectReference& object);

}  // namespace lomaris
