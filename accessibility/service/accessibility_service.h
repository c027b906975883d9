#pragma once

#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "accessibility/service/app_selection_session.h"
#include "platform/platform.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace lomaris {

/// The entry points of the library: the permission check, and capturing, reading, replacing and diagnosing the
/// selection of the application in front. Each call looks at the front application afresh. Used from one thread at a
/// time, the main thread.
///
/// Limits are the UTF-16 units of context wanted before and after the selection; if one of them is negative, both sides
/// are empty. JSON is pretty-printed with sorted keys, UTF-8, without a line feed at the end.
///
/// After a paste the main queue restores the user's clipboard, 2.5 s later at most; the call returns before. A host
/// keeps the service, a session or its platform for so long. Where the platform's main queue is that of the process
/// (macOS), a main run loop that turns is all else it takes; elsewhere the host brings a platform of its own and turns
/// it (`Scheduling::runLoopSlice`). Another capture or replacement before that first waits until the target has read the
/// pasted text, 2.5 s at most, and in the end restores what the paste had saved.
class LomarisAccessibilityService {
public:
    /// On the platform that this build runs on.
    LomarisAccessibilityService();
    /// On a platform of the caller's, which must outlive the service and every session that it captured; for hosts that
    /// turn the run loop themselves, and for tests.
    explicit LomarisAccessibilityService(Platform& platform);
    LomarisAccessibilityService(const LomarisAccessibilityService&) = delete;
    LomarisAccessibilityService& operator=(const LomarisAccessibilityService&) = delete;
    ~LomarisAccessibilityService() = default;

    /// Whether this process may use accessibility; with `TrustPrompt::ask` the system asks the user where it may not.
    [[nodiscard]] bool hasPermission(TrustPrompt prompt);

    /// Captures the selection for a later replacement. The session remembers whether the clipboard may be used. Throws
    /// `BridgeError`; `clipboardFallbackDisabled` where the application shows no selection and it may not be used.
    [[nodiscard]] std::unique_ptr<AppSelectionSession> captureSelection(const SelectionReadOptions& options);

    /// The same for a user who invoked the assistant by its shortcut, and who gets a chat where nothing is selected:
    /// a file manager's selection is `noTextSelected`; a terminal's must have a range, or be copied.
    [[nodiscard]] std::unique_ptr<AppSelectionSession> captureSelectionOrChat(const SelectionReadOptions& options);

    /// The selected text. Throws `BridgeError`.
    [[nodiscard]] Text readSelectionText(std::int64_t beforeLimit, std::int64_t afterLimit);

    /// The selection with its context as JSON, "/" as it is. Throws `BridgeError`.
    [[nodiscard]] std::string readSelectionJSON(std::int64_t beforeLimit, std::int64_t afterLimit);

    /// Reads the selection and writes `replacement` over it, if it is still the same a moment later. Throws
    /// `BridgeError`; `invalidInput`, before anything is touched, where the replacement is empty.
    void replaceCurrentSelection(TextView replacement, std::int64_t beforeLimit, std::int64_t afterLimit);

    /// Replaces the selection only if it is the one that the request expects, the JSON bytes of a
    /// `GuardedReplacementRequest`. Throws `BridgeError`: `invalidInput`, before anything is touched, where the bytes
    /// are no request or one of its texts is empty; `selectionChanged` where anything is not as expected.
    void replaceSelectionIfCurrent(std::string_view requestData, std::int64_t beforeLimit, std::int64_t afterLimit);

    /// What the elements of the front application's window say of their selections, as the JSON of an
    /// `AccessibilityDiagnosticPayload`, "/" escaped. Reads no text out of the process and writes nothing. Throws
    /// `BridgeError`.
    [[nodiscard]] std::string selectionDiagnosticJSON();

    /// Which route works for the front application, told by an ordinary read, as the JSON of a
    /// `CompatibilityDiagnosticPayload`, "/" escaped. Throws the `BridgeError` of the read.
    [[nodiscard]] std::string compatibilityDiagnosticJSON();

private:
    [[nodiscard]] SelectionSnapshot readSelection(std::int64_t beforeLimit, std::int64_t afterLimit);
    [[nodiscard]] std::unique_ptr<AppSelectionSession> capture(const SelectionReadOptions& options,
                                                               SelectionPurpose purpose);

    /// Shared with the sessions.
    std::shared_ptr<MacOSAccessibilityAdapter> adapter_;
};

}  // namespace lomaris
