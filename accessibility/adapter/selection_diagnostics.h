#pragma once

#include "accessibility/model/diagnostics.h"
#include "platform/platform.h"

namespace lomaris {

/// Examines the elements of the front application breadth-first from its scan roots, and returns those that help to
/// find out why a selection can or cannot be read. Examines at most 3,000 elements, none below depth 30. Writes
/// nothing. Values that an element does not report are absent, false or 0. Main thread; requests the attributes in
/// batches.
///
/// Throws `BridgeError`: `accessibilityPermissionRequired` before anything is read, and `focusedApplicationUnavailable`
/// if no application is in front.
[[nodiscard]] AccessibilityDiagnosticPayload diagnoseSelection(Platform& platform);

}  // namespace lomaris
