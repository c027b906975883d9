#pragma once

#include "accessibility/adapter/replacement.h"
#include "accessibility/adapter/selection_purpose.h"
#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/bridge_error.h"
#include "accessibility/model/diagnostics.h"
#include "accessibility/model/guarded_replacement_request.h"
#include "accessibility/model/selection.h"
#include "platform/platform.h"

#include <memory>
#include <optional>

namespace lomaris {

/// Reads, replaces and diagnoses the selection of the application in front: decides on the route, and owns what both
/// routes share. Main thread; every operation is synchronous, but for the restore of the clipboard after a paste.
class MacOSAccessibilityAdapter {
public:
    using SelectionPurpose = lomaris::SelectionPurpose;

    /// Borrows the platform, which must outlive the adapter.
    explicit MacOSAccessibilityAdapter(Platform& platform);
    /// Shares the platform and keeps it alive. Not null.
    explicit MacOSAccessibilityAdapter(std::shared_ptr<Platform> platform);

    /// Reads the selection directly, or through keyboard and clipboard where the application does not show it, and
    /// records in the capture trace which route was taken and what went wrong. Throws `BridgeError`.
    [[nodiscard]] SelectionSnapshot readSelection(const SelectionReadOptions& options, SelectionPurpose purpose);

    /// Writes over a selection that was read, if it is still the same; see `lomaris::replaceSelection`.
    void replaceSelection(const SelectionSnapshot& snapshot, TextView replacement, const ReplacementOptions& options);

    /// Replaces the selection of the application in front only if it is the one that `request` expects: same
    /// application, same text, and the same range or, where there is none to compare, no user input in between; of a
    /// selection that has to be copied, without an expected range, the text alone counts. The selection is read again
    /// with `options` for that. Every refusal is `selectionChanged`, with its reason in the guard trace and nothing
    /// written; the other errors are those of `replaceSelection`, whose own last look leaves no trace.
    void replaceSelectionIfCurrent(const GuardedReplacementRequest& request, const SelectionReadOptions& options);

    /// See `lomaris::diagnoseSelection`.
    [[nodiscard]] AccessibilityDiagnosticPayload diagnoseSelection();

    /// Makes the calls up to the end of the scope one operation for the clipboard; see `KeyboardClipboardFallback`.
    [[nodiscard]] ClipboardHold::Scope operation() { return keyboardClipboardFallback_.operation(); }

    [[nodiscard]] Platform& platform() { return *platform_; }

private:
    /// Decides on the clipboard route after a direct read failed with `error`; `application` is the one that was in
    /// front before it.
    [[nodiscard]] SelectionSnapshot readAfterFailure(const BridgeError& error,
                                                     const std::optional<RunningApplication>& application,
                                                     const SelectionReadOptions& options, SelectionPurpose purpose);

    /// The second look of a guarded replacement; a failure is a refusal.
    [[nodiscard]] SelectionSnapshot readAgain(const SelectionReadOptions& options);

    std::shared_ptr<Platform> platform_;
    KeyboardClipboardFallback keyboardClipboardFallback_;
};

}  // namespace lomaris
