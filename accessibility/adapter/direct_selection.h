#pragma once

#include "accessibility/adapter/selection_read_options.h"
#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/outcome.h"
#include "accessibility/model/selection.h"
#include "accessibility/model/selection_purpose.h"
#include "platform/platform.h"

namespace lomaris {

/// Reads the selection of the front application through accessibility: text, range, context, input counters, and
/// whether the element can be written. If the application is a browser or code editor with a selection, copies it
/// through `fallback` instead, because what these applications expose is unreliable. Records the route in the capture
/// trace. Main thread; synchronous.
///
/// Throws `BridgeError`: `accessibilityPermissionRequired`; `focusedElementUnavailable`; `selectedTextUnavailable`;
/// `noTextSelected` if nothing is selected or the shortcut policy rejects the selection; `clipboardFallbackDisabled` if
/// the element cannot be written and the clipboard may not be used; and the errors of the clipboard route.
[[nodiscard]] SelectionSnapshot readDirectSelection(Platform& platform, KeyboardClipboardFallback& fallback,
                                                    const SelectionReadOptions& options, SelectionPurpose purpose);

/// As `readDirectSelection`, but returns the error.
[[nodiscard]] Outcome<SelectionSnapshot> tryReadDirectSelection(Platform& platform, KeyboardClipboardFallback& fallback,
                                                                const SelectionReadOptions& options,
                                                                SelectionPurpose purpose);

}  // namespace lomaris
