#pragma once

#include "accessibility/adapter/selection_purpose.h"
#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/selection.h"
#include "platform/platform.h"

namespace lomaris {

/// Reads the selection of the application in front through accessibility: text, range, context, input counters, and
/// whether the element can be written. A browser or code editor that shows some selection is read through `fallback`
/// instead, as what it shows is not dependable. Records the route in the capture trace. Main thread; synchronous.
///
/// Throws `BridgeError`: `accessibilityPermissionRequired`; `focusedElementUnavailable`; `selectedTextUnavailable`;
/// `noTextSelected` where nothing is selected or the shortcut policy refuses it; `clipboardFallbackDisabled` where the
/// element cannot be written and the clipboard may not be used; and the errors of the clipboard route.
[[nodiscard]] SelectionSnapshot readDirectSelection(Platform& platform, KeyboardClipboardFallback& fallback,
                                                    const SelectionReadOptions& options, SelectionPurpose purpose);

}  // namespace lomaris
