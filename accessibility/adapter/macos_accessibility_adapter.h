#pragma once

#include "accessibility/adapter/replacement.h"
#include "accessibility/adapter/selection_read_options.h"
#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/bridge_error.h"
#include "accessibility/model/diagnostics.h"
#include "accessibility/model/guarded_replacement_request.h"
#include "accessibility/model/outcome.h"
#include "accessibility/model/selection.h"
#include "accessibility/model/selection_purpose.h"
#include "platform/platform.h"

#include <memory>
#include <optional>

namespace lomaris {

/// Reads, replaces and diagnoses the selection of the front application. Chooses between the direct and the clipboard
/// route, and owns the state that both share. Main thread. Synchronous, except for the restore of the clipboard after a
/// paste.
class MacOSAccessibilityAdapter {
public:
    using SelectionPurpose = lomaris::SelectionPurpose;

    /// Borrows the platform, which must outlive the adapter.
    explicit MacOSAccessibilityAdapter(Platform& platform);
    /// Shares ownership of the platform, which must not be null.
    explicit MacOSAccessibilityAdapter(std::shared_ptr<Platform> platform);

    /// Reads the selection directly, or through keyboard and clipboard if the application does not expose it. Records
    /// the route and the error of a failed direct read in the capture trace. Throws `BridgeError`.
    [[nodiscard]] SelectionSnapshot readSelection(const SelectionReadOptions& options, SelectionPurpose purpose);

    /// Replaces a selection that was read earlier if it is unchanged; see `lomaris::replaceSelection`.
    void replaceSelection(const SelectionSnapshot& snapshot, TextView replacement, const ReplacementOptions& options);

    /// Replaces the selection of the front application only if it is the one that `request` expects: the same
    /// application, the same text and the same range. If one of the ranges is unknown, there must have been no user
    /// input instead. If both are unknown and the replacement has to be pasted, only application and text are compared.
    /// Reads the selection again with `options`.
    ///
    /// Throws `selectionChanged` for every refusal, with nothing written and the reason in the guard trace; otherwise
    /// the errors of `replaceSelection`, whose own check before the write does not record a reason.
    void replaceSelectionIfCurrent(const GuardedReplacementRequest& request, const SelectionReadOptions& options);

    /// See `lomaris::diagnoseSelection`.
    [[nodiscard]] AccessibilityDiagnosticPayload diagnoseSelection();

    /// Makes the calls until the end of the scope one clipboard operation; see `KeyboardClipboardFallback`.
    [[nodiscard]] ClipboardHold::Scope operation() { return keyboardClipboardFallback_.operation(); }

    [[nodiscard]] Platform& platform() { return *platform_; }

private:
    /// As `readSelection`, but returns the error.
    [[nodiscard]] Outcome<SelectionSnapshot> tryReadSelection(const SelectionReadOptions& options,
                                                              SelectionPurpose purpose);

    /// Copies the selection if that may help after a direct read failed with `error`; otherwise returns `error`.
    /// `application` is the one that was in front before the read.
    [[nodiscard]] Outcome<SelectionSnapshot> readAfterFailure(const BridgeError& error,
                                                              const std::optional<RunningApplication>& application,
                                                              const SelectionReadOptions& options,
                                                              SelectionPurpose purpose);

    /// Reads the selection again for a guarded replacement. Any failure is a refusal.
    [[nodiscard]] SelectionSnapshot readAgain(const SelectionReadOptions& options);

    std::shared_ptr<Platform> platform_;
    KeyboardClipboardFallback keyboardClipboardFallback_;
};

}  // namespace lomaris
