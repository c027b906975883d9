#include "accessibility/service/accessibility_service.h"

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

SelectionSnapshot LomarisAccessibilityService::readSelection(std::int64_t beforeLimit, std::int64_t afterLimit) {
    return adapter_.readSelection({.beforeLimit = beforeLimit,
                                   .afterLimit = afterLimit,
                                   .allowClipboardFallback = true,
                                   .purpose = SelectionPurpose::standard});
}

}  // namespace lomaris
