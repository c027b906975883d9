#include "accessibility/service/accessibility_service.h"

#include "accessibility/model/bridge_error.h"
#include "accessibility/model/diagnostics_json.h"
#include "accessibility/model/guarded_replacement_request_json.h"
#include "accessibility/model/selection_json.h"

#include <utility>

namespace lomaris {

namespace {

/// UTF-16 units of context on each side for the compatibility check.
constexpr std::int64_t compatibilityContextLimit = 500;

}  // namespace

LomarisAccessibilityService::LomarisAccessibilityService(Platform& platform)
    : adapter_(std::make_shared<MacOSAccessibilityAdapter>(platform)) {}

bool LomarisAccessibilityService::hasPermission(TrustPrompt prompt) {
    return adapter_->platform().accessibility().isProcessTrusted(prompt);
}

std::unique_ptr<AppSelectionSession> LomarisAccessibilityService::captureSelection(
    const SelectionReadOptions& options) {
    return capture(options, SelectionPurpose::standard);
}

std::unique_ptr<AppSelectionSession> LomarisAccessibilityService::captureSelectionOrChat(
    const SelectionReadOptions& options) {
    return capture(options, SelectionPurpose::shortcut);
}

Text LomarisAccessibilityService::readSelectionText(std::int64_t beforeLimit, std::int64_t afterLimit) {
    return readSelection(beforeLimit, afterLimit).payload.selectedText;
}

std::string LomarisAccessibilityService::readSelectionJSON(std::int64_t beforeLimit, std::int64_t afterLimit) {
    return encodeJson(readSelection(beforeLimit, afterLimit).payload, SlashEscaping::unescaped);
}

void LomarisAccessibilityService::replaceCurrentSelection(TextView replacement, std::int64_t beforeLimit,
                                                          std::int64_t afterLimit) {
    if (replacement.empty()) {
        throw BridgeError::invalidInput(u"Replacement text must not be empty.");
    }
    const auto operation = adapter_->operation();
    const SelectionSnapshot snapshot = readSelection(beforeLimit, afterLimit);
    adapter_->replaceSelection(snapshot, replacement, {.allowClipboardFallback = true, .justVerified = false});
}

void LomarisAccessibilityService::replaceSelectionIfCurrent(std::string_view requestData, std::int64_t beforeLimit,
                                                            std::int64_t afterLimit) {
    const auto request = decodeGuardedReplacementRequest(requestData);
    if (!request) {
        throw BridgeError::invalidInput(u"Guarded replacement request is invalid JSON.");
    }
    if (request->expectedText.empty() || request->replacementText.empty()) {
        throw BridgeError::invalidInput(u"Expected and replacement text must not be empty.");
    }
    adapter_->replaceSelectionIfCurrent(
        *request, {.beforeLimit = beforeLimit, .afterLimit = afterLimit, .allowClipboardFallback = true});
}

std::string LomarisAccessibilityService::selectionDiagnosticJSON() {
    return encodeJson(adapter_->diagnoseSelection(), SlashEscaping::escaped);
}

std::string LomarisAccessibilityService::compatibilityDiagnosticJSON() {
    const SelectionSnapshot snapshot = readSelection(compatibilityContextLimit, compatibilityContextLimit);
    return encodeJson(CompatibilityDiagnosticPayload(snapshot.payload), SlashEscaping::escaped);
}

SelectionSnapshot LomarisAccessibilityService::readSelection(std::int64_t beforeLimit, std::int64_t afterLimit) {
    return adapter_->readSelection(
        {.beforeLimit = beforeLimit, .afterLimit = afterLimit, .allowClipboardFallback = true},
        SelectionPurpose::standard);
}

std::unique_ptr<AppSelectionSession> LomarisAccessibilityService::capture(const SelectionReadOptions& options,
                                                                          SelectionPurpose purpose) {
    // make_unique cannot call the private constructor.
    return std::unique_ptr<AppSelectionSession>(
        new AppSelectionSession(adapter_, adapter_->readSelection(options, purpose), options.allowClipboardFallback));
}

}  // namespace lomaris
