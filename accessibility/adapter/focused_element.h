#pragma once

#include "platform/platform.h"

#include <optional>

namespace lomaris {

/// The element that holds the user's text, and the application in front when it was looked for, if there was one.
struct FocusedElement {
    Element element;
    std::optional<RunningApplication> application;
};

/// Finds the focused element: asks the application in front, up to five times 0.1 s apart while it cannot answer; then
/// walks its tree; then asks the system. Throws `BridgeError::focusedElementUnavailable` with the application's last
/// code and name; the code is 0 where it answered success without an element. Main thread; blocks for the pauses, at
/// most 0.8 s in all.
[[nodiscard]] FocusedElement focusedElement(Platform& platform);

/// Walks the focused window of an application, or else all its windows, or else its root element, breadth first, for
/// the element that holds a selection: the first one with selected text or with a range of at least one unit, else the
/// first focused text element, else the first text element, else nothing. Examines at most 3,000 elements and none
/// below depth 30. Never throws. Main thread.
[[nodiscard]] std::optional<Element> findFocusedTextDescendant(Accessibility& accessibility,
                                                               const Element& application);

}  // namespace lomaris
