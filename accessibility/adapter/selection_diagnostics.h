#pragma once

#include "accessibility/model/diagnostics.h"
#include "platform/platform.h"

namespace lomaris {

/// Walks the front application's focused window, or else all its windows, or else its root element, breadth first, and
/// keeps what can tell why a selection can or cannot be read. Examines at most 3,000 elements and none below depth 30;
/// reads nothing of others and writes nothing. What an element does not answer is absent, false or 0. Throws
/// `BridgeError`: `accessibilityPermissionRequired`, before anything is read, and `focusedApplicationUnavailable` where
/// no application is in front. Main thread; each batch of elements crosses into the application.
[[nodiscard]] AccessibilityDiagnosticPayload diagnoseSelection(Platform& platform);

}  // namespace lomaris
