#pragma once

#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/selection.h"
#include "platform/platform.h"

namespace lomaris {

/// What a replacement may take for granted.
struct ReplacementOptions {
    /// Whether the keyboard/clipboard route may be used at all.
    bool allowClipboardFallback = false;
    /// Whether the caller has just read the selection through the keyboard route, so that it need not be copied again.
    bool justVerified = false;
};

/// Writes `replacement` over a selection that was read earlier, if it is still the same: into the element, or by
/// pasting, as the snapshot's strategy says. The one operation that writes text into another application. Main thread;
/// synchronous but for the restore of the clipboard after a paste.
///
/// Throws `BridgeError`: `directReplacementUnsupported`, `selectionChanged`, `replacementFailed`,
/// `clipboardFallbackDisabled`, and those of reading the selection again and of the paste. Nothing was written then,
/// except after `replacementFailed`, where only the target knows, and where a web address took the place of the
/// selection by Delete and the paste behind it failed.
void replaceSelection(Platform& platform, KeyboardClipboardFallback& fallback, const SelectionSnapshot& snapshot,
                      TextView replacement, const ReplacementOptions& options);

}  // namespace lomaris
