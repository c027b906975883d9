#include "accessibility/service/accessibility_service.h"

#include "accessibility/model/bridge_error.h"
#include "accessibility/model/diagnostics_json.h"
#include "accessibility/model/guarded_replacement_request_json.h"
#include "accessibility/model/selection_json.h"

#include <utility>

namespace lomaris {

namespace {

/// For the compatibility check.
constexpr ContextLimits compatibilityContextLimits{.before = 500, .after = 500};

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

Text LomarisAccessibilityService::readSelectionText(ContextLimits limits) {
    return readSelection(limits).payload.selectedText;
}

std::string LomarisAccessibilityService::readSelectionJSON(ContextLimits limits) {
    return encodeJson(readSelection(limits).payload, SlashEscaping::unescaped);
}

void LomarisAccessibilityService::replaceCurrentSelection(TextView replacement, ContextLimits limits) {
    if (replacement.empty()) {
        throw BridgeError::invalidInput(u"Replacement text must not be empty.");
    }
    const auto operation = adapter_->operation();
    const SelectionSnapshot snapshot = readSelection(limits);
    adapter_->replaceSelection(snapshot, replacement, {.allowClipboardFallback = true, .justVerified = false});
}

void LomarisAccessibilityService::replaceSelectionIfCurrent(std::string_view requestData, ContextLimits limits) {
    const auto request = decodeGuardedReplacementRequest(requestData);
    if (!request) {
        throw BridgeError::invalidInput(u"Guarded replacement request is invalid JSON.");
    }
    if (request->expectedText.empty() || request->replacementText.empty()) {
        throw BridgeError::invalidInput(u"Expected and replacement text must not be empty.");
    }
    adapter_->replaceSelectionIfCurrent(*request, {.limits = limits, .allowClipboardFallback = true});
}

std::string LomarisAccessibilityService::selectionDiagnosticJSON() {
    return encodeJson(adapter_->diagnoseSelection(), SlashEscaping::escaped);
}

std::string LomarisAccessibilityService::compatibilityDiagnosticJSON() {
    const SelectionSnapshot snapshot = readSelection(compatibilityContextLimits);
    return encodeJson(CompatibilityDiagnosticPayload(snapshot.payload), SlashEscaping::escaped);
}

SelectionSnapshot LomarisAccessibilityService::readSelection(ContextLimits limits) {
    return adapter_->readSelection({.limits = limits, .allowClipboardFallback = true}, SelectionPurpose::standard);
}

std::unique_ptr<AppSelectionSession> LomarisAccessibilityService::capture(const SelectionReadOptions& options,
                                                                          SelectionPurpose purpose) {
    // make_unique cannot call the private constructor.
    return std::unique_ptr<AppSelectionSession>(
        new AppSelectionSession(adapter_, adapter_->readSelection(options, purpose), options.allowClipboardFallback));
}

}  // namespace lomaris
