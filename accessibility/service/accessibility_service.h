#pragma once

#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "accessibility/model/context_limits.h"
#include "accessibility/service/app_selection_session.h"
#include "platform/platform.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace lomaris {

/// The entry points of the library: checks the permission, and captures, reads, replaces and diagnoses the selection of
/// the front application. Each call determines the front application again. Main thread.
///
/// Limits may also be passed as two numbers. JSON is UTF-8, pretty-printed with sorted keys, without a final line feed.
///
/// After a paste the call returns immediately, and the main queue restores the user's clipboard within 2.5 s. Until
/// then the host must keep the service, a session or its platform alive and process the main queue. On macOS, running
/// the main run loop is enough; on other systems, the host must pass its own platform and call
/// `Scheduling::runLoopSlice`. A capture or replacement before that restore first waits until the target has read the
/// pasted text, for up to 2.5 s, and in the end restores the contents that the paste saved.
class LomarisAccessibilityService {
public:
    /// Uses the platform of this build.
    LomarisAccessibilityService();
    /// Uses the caller's platform, which must outlive the service and all sessions that it captured. For hosts that
    /// call the run loop themselves, and for tests.
    explicit LomarisAccessibilityService(Platform& platform);
    LomarisAccessibilityService(const LomarisAccessibilityService&) = delete;
    LomarisAccessibilityService& operator=(const LomarisAccessibilityService&) = delete;
    ~LomarisAccessibilityService() = default;

    /// True if this process may use accessibility. If not, `TrustPrompt::ask` makes the system prompt the user.
    [[nodiscard]] bool hasPermission(TrustPrompt prompt);

    /// Captures the selection for a later replacement, which may use the clipboard only if the capture may. Throws
    /// `BridgeError`; `clipboardFallbackDisabled` if the clipboard is needed but not allowed.
    [[nodiscard]] std::unique_ptr<AppSelectionSession> captureSelection(const SelectionReadOptions& options);

    /// As `captureSelection`, for a user who invoked the assistant by its shortcut and gets a chat if nothing is
    /// selected. Throws `noTextSelected` in file managers. The selection of a terminal must have a range or be copied.
    [[nodiscard]] std::unique_ptr<AppSelectionSession> captureSelectionOrChat(const SelectionReadOptions& options);

    /// Returns the selected text. Throws `BridgeError`.
    [[nodiscard]] Text readSelectionText(ContextLimits limits);
    [[nodiscard]] Text readSelectionText(std::int64_t beforeLimit, std::int64_t afterLimit) {
        return readSelectionText({beforeLimit, afterLimit});
    }

    /// Returns the selection with its context as JSON of a `SelectionPayload`, "/" not escaped. Throws `BridgeError`.
    [[nodiscard]] std::string readSelectionJSON(ContextLimits limits);
    [[nodiscard]] std::string readSelectionJSON(std::int64_t beforeLimit, std::int64_t afterLimit) {
        return readSelectionJSON({beforeLimit, afterLimit});
    }

    /// Reads the selection, checks it once more and replaces it by `replacement`. Throws `BridgeError`; `invalidInput`
    /// if the replacement is empty, before any other action.
    void replaceCurrentSelection(TextView replacement, ContextLimits limits);
    void replaceCurrentSelection(TextView replacement, std::int64_t beforeLimit, std::int64_t afterLimit) {
        replaceCurrentSelection(replacement, {beforeLimit, afterLimit});
    }

    /// Replaces the selection only if it is the one that the request expects. `requestData` is the JSON of a
    /// `GuardedReplacementRequest`. Throws `BridgeError`: `invalidInput` if that cannot be decoded or one of its texts
    /// is empty, before any other action; `selectionChanged` if the selection is not the expected one.
    void replaceSelectionIfCurrent(std::string_view requestData, ContextLimits limits);
    void replaceSelectionIfCurrent(std::string_view requestData, std::int64_t beforeLimit, std::int64_t afterLimit) {
        replaceSelectionIfCurrent(requestData, {beforeLimit, afterLimit});
    }

    /// Returns the selection attributes of the elements in the front application's window, as JSON of an
    /// `AccessibilityDiagnosticPayload`, "/" escaped. Contains no texts of the user and writes nothing. Throws
    /// `BridgeError`.
    [[nodiscard]] std::string selectionDiagnosticJSON();

    /// Reads the selection and returns which route works for the front application, as JSON of a
    /// `CompatibilityDiagnosticPayload`, "/" escaped. Throws the `BridgeError` of the read.
    [[nodiscard]] std::string compatibilityDiagnosticJSON();

private:
    [[nodiscard]] SelectionSnapshot readSelection(ContextLimits limits);
    [[nodiscard]] std::unique_ptr<AppSelectionSession> capture(const SelectionReadOptions& options,
                                                               SelectionPurpose purpose);

    /// Shared with the sessions.
    std::shared_ptr<MacOSAccessibilityAdapter> adapter_;
};

}  // namespace lomaris
