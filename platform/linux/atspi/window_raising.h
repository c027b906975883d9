#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_connection.h"
#include "text/text.h"

#include <functional>

namespace lomaris {

/// Activates the window of a process that has this title, or its only window whatever its title. Returns whether that
/// window is active afterwards. AT-SPI has no such call; the window system does it. Main thread.
using WindowRaiser = std::function<bool(ProcessIdentifier processIdentifier, TextView title)>;

/// Whether the object is a window: a child of the root object of its application. Finishes the bus's calls.
[[nodiscard]] bool isWindow(BusConnection& bus, const ObjectReference& object);

/// Raises the window that an object shows and answers the result code: `cannotComplete` where it did not come to the
/// front. Finishes the bus's calls.
[[nodiscard]] AXError raiseWindow(BusConnection& bus, const ObjectReference& window,
                                  ProcessIdentifier processIdentifier, const WindowRaiser& raiser);

/// Gives an object the focus and answers the result code: `cannotComplete` where it does not have it afterwards.
/// Finishes the bus's calls.
[[nodiscard]] AXError grabFocus(BusConnection& bus, const ObjectReference& object);

}  // namespace lomaris
