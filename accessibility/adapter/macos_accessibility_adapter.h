#pragma once

#include "accessibility/adapter/replacement.h"
#include "accessibility/adapter/selection_purpose.h"
#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/bridge_error.h"
#include "accessibility/model/selection.h"
#include "platform/platform.h"

#include <optional>

namespace lomaris {

/// Reads and replaces the selection of the application in front: decides on the route, and owns what both routes share.
/// Main thread; every operation is synchronous, but for the restore of the clipboard after a paste. Borrows the
/// platform, which must outlive it.
class MacOSAccessibilityAdapter {
public:
    using SelectionPurpose = lomaris::SelectionPurpose;

    explicit MacOSAccessibilityAdapter(Platform& platform)
        : platform_(platform), keyboardClipboardFallback_(platform) {}

    /// Reads the selection directly, or through keyboard and clipboard where the application does not show it, and
    /// records in the capture trace which route was taken and what went wrong. Throws `BridgeError`.
    [[nodiscard]] SelectionSnapshot readSelection(const SelectionReadOptions& options, SelectionPurpose purpose);

    /// Writes over a selection that was read, if it is still the same; see `lomaris::replaceSelection`.
    void replaceSelection(const SelectionSnapshot& snapshot, TextView replacement, const ReplacementOptions& options);

    [[nodiscard]] Platform& platform() { return platform_; }

private:
    /// Decides on the clipboard route after a direct read failed with `error`; `application` is the one that was in
    /// front before it.
    [[nodiscard]] SelectionSnapshot readAfterFailure(const BridgeError& error,
                                                     const std::optional<RunningApplication>& application,
                                                     const SelectionReadOptions& options, SelectionPurpose purpose);

    Platform& platform_;
    KeyboardClipboardFallback keyboardClipboardFallback_;
};

}  // namespace lomaris
