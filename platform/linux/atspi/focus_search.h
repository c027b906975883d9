#pragma once

#include "platform/linux/dbus/bus_connection.h"

#include <optional>
#include <vector>

namespace lomaris {

/// What a look for an object among those of an application found: an object, or the code that says why there is none.
struct FoundObject {
    AXError error = AXError::noValue;
    std::optional<ObjectReference> object;
};

/// The windows of an application, in its own order, each with its states.
struct ApplicationWindow {
    ObjectReference object;
    bool isActive = false;
    bool isShowing = false;
};
struct ApplicationWindows {
    AXError error = AXError::success;
    std::vector<ApplicationWindow> windows;
};

/// The children of an application's root object. Finishes the bus's calls.
[[nodiscard]] ApplicationWindows applicationWindows(BusConnection& bus, const ObjectReference& root);

/// The object that has the focus, below the active window of the application, or below any where none is active. No
/// toolkit says directly which one it is. `noValue` where nothing has the focus. Finishes the bus's calls.
[[nodiscard]] FoundObject findFocusedObject(BusConnection& bus, const ObjectReference& root);

}  // namespace lomaris
