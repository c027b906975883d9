#pragma once

#include "accessibility/model/outcome.h"
#include "platform/platform.h"

#include <optional>

namespace lomaris {

/// The element with the user's text, and the application that was in front during the search, if any.
struct FocusedElement {
    Element element;
    std::optional<RunningApplication> application;
};

/// Finds the focused element: requests it from the front application, then searches the application's tree, then
/// requests it from the system-wide element. Each request is made up to five times, 0.1 s apart, while the error is
/// `cannotComplete`. Without a front application, only the system-wide element is used.
///
/// Throws `BridgeError::focusedElementUnavailable` with the name of the application and the error code of the request
/// to it (to the system-wide element if there is no application); the code is 0 if the request succeeded without an
/// element. Main thread; pauses for up to 0.8 s in total.
[[nodiscard]] FocusedElement focusedElement(Platform& platform);

/// As `focusedElement`, but returns the error.
[[nodiscard]] Outcome<FocusedElement> tryFocusedElement(Platform& platform);

/// Searches the tree of an application breadth-first, from its scan roots, for the element with the selection. Returns
/// the first element with selected text or a range of at least one unit; otherwise the first focused text element;
/// otherwise the first text element; otherwise nullopt. Examines at most 3,000 elements, none below depth 30. Never
/// throws. Main thread.
[[nodiscard]] std::optional<Element> findFocusedTextDescendant(Accessibility& accessibility,
                                                               const Element& application);

}  // namespace lomaris
