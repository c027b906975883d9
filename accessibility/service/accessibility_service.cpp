#include "accessibility/service/accessibility_service.h"

#include "accessibility/model/bridge_error.h"
#include "accessibility/model/selection_json.h"

#include <utility>

namespace lomaris {

LomarisAccessibilityService::LomarisAccessibilityService(Platform& platform) : adapter_(platform) {}

LomarisAccessibilityService::~LomarisAccessibilityService() = default;

bool LomarisAccessibilityService::hasPermission(TrustPrompt prompt) {
    return adapter_.platform().accessibility().isProcessTrusted(prompt);
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
    const SelectionSnapshot snapshot = readSelection(beforeLimit, afterLimit);
    adapter_.replaceSelection(snapshot, replacement, {.allowClipboardFallback = true, .justVerified = false});
}

SelectionSnapshot LomarisAccessibilityService::readSelection(std::int64_t beforeLimit, std::int64_t afterLimit) {
    return adapter_.readSelection(
        {.beforeLimit = beforeLimit, .afterLimit = afterLimit, .allowClipboardFallback = true},
        SelectionPurpose::standard);
}

}  // namespace lomaris
