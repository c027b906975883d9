#pragma once

#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/selection.h"
#include "platform/platform.h"

namespace lomaris {

/// Conditions under which a replacement may paste.
struct ReplacementOptions {
    /// Whether the clipboard may be used.
    bool allowClipboardFallback = false;
    /// Whether the caller has just copied the selection, so that it need not be copied again for comparison.
    bool justVerified = false;
};

/// Replaces a selection that was read earlier if it is unchanged, either by setting the element's attribute or by
/// pasting, as the snapshot's strategy says. Only this function writes text into other applications. Main thread.
/// Synchronous, except for the restore of the clipboard after a paste.
///
/// Throws `BridgeError`: `directReplacementUnsupported`, `selectionChanged`, `replacementFailed`,
/// `clipboardFallbackDisabled`, and the errors of reading the selection again and of the paste. After an error nothing
/// was written, with two exceptions: after `replacementFailed` the target may have written the text; and if the
/// replacement is a web address, the selection may have been deleted before the paste failed.
void replaceSelection(Platform& platform, KeyboardClipboardFallback& fallback, const SelectionSnapshot& snapshot,
                      TextView replacement, const ReplacementOptions& options);

}  // namespace lomaris
