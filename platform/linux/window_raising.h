#pragma once

#include "platform/accessibility.h"
#include "platform/linux/bus_connection.h"
#include "text/text.h"

namespace lomaris {

/// Brings windows to the front. Elements know their process and their title; the windows themselves belong to the
/// window system.
class WindowRaiser {
public:
    WindowRaiser() = default;
    WindowRaiser(const WindowRaiser&) = delete;
    WindowRaiser& operator=(const WindowRaiser&) = delete;
    virtual ~WindowRaiser() = default;

    /// Brings the window of the process that has this title to the front, or its only window whatever the title;
    /// whether it is in front now. Main thread only.
    [[nodiscard]] virtual bool raise(ProcessIdentifier processIdentifier, TextView title) = 0;
};

/// Whether the object is a window: a child of the root object of its application. Finishes the bus's calls.
[[nodiscard]] bool isWindow(BusConnection& bus, const ObjectReference& object);

/// Raises the window that an object shows and answers the result code: `cannotComplete` where it did not come to the
/// front. Finishes the bus's calls.
[[nodiscard]] AXError raiseWindow(BusConnection& bus, const ObjectReference& window,
                                  ProcessIdentifier processIdentifier, WindowRaiser& raiser);

/// Gives an object the focus and answers the result code: `cannotComplete` where it does not have it afterwards.
/// Finishes the bus's calls.
[[nodiscard]] AXError grabFocus(BusConnection& bus, const ObjectReference& object);

}  // namespace lomaris
