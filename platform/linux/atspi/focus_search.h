#pragma once

#include "platform/linux/dbus/bus_connection.h"

#include <optional>
#include <vector>

namespace lomaris {

/// The result of a search: an object and `success`, or no object and the reason.
struct FoundObject {
    AXError error = AXError::noValue;
    std::optional<ObjectReference> object;
};

/// A window of an application, with the states that matter here.
struct ApplicationWindow {
    ObjectReference object;
    bool isActive = false;
    bool isShowing = false;
};
/// The windows of an application, in the application's order. With an error code the list may be incomplete.
struct ApplicationWindows {
    AXError error = AXError::success;
    std::vector<ApplicationWindow> windows;
};

/// Returns the children of an application's root object. Calls `bus.finish`.
[[nodiscard]] ApplicationWindows applicationWindows(BusConnection& bus, const ObjectReference& root);

/// Searches for the focused object, as AT-SPI has no call for it: below the active windows of the application, or below
/// all windows if none is active. `noValue` if no object has the focus. Calls `bus.finish`.
[[nodiscard]] FoundObject findFocusedObject(BusConnection& bus, const ObjectReference& root);

}  // namespace lomaris
