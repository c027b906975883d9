#include "accessibility/model/diagnostics_json.h"

#include "accessibility/model/selection_fields.h"
#include "json/json_record.h"

#include <tuple>

namespace lomaris {

template <>
constexpr auto jsonFieldsOf<AccessibilityNodeDiagnostic> = std::tuple{
    JsonField{"childCount", &AccessibilityNodeDiagnostic::childCount},
    JsonField{"depth", &AccessibilityNodeDiagnostic::depth},
    JsonField{"focused", &AccessibilityNodeDiagnostic::focused},
    JsonField{"identifier", &AccessibilityNodeDiagnostic::identifier},
    JsonField{"path", &AccessibilityNodeDiagnostic::path},
    JsonField{"role", &AccessibilityNodeDiagnostic::role},
    JsonField{"selectedRange", &AccessibilityNodeDiagnostic::selectedRange},
    JsonField{"selectedTextLength", &AccessibilityNodeDiagnostic::selectedTextLength},
    JsonField{"selectedTextSettable", &AccessibilityNodeDiagnostic::selectedTextSettable},
    JsonField{"selectedTextStatus", &AccessibilityNodeDiagnostic::selectedTextStatus},
    JsonField{"subrole", &AccessibilityNodeDiagnostic::subrole},
    JsonField{"valueLength", &AccessibilityNodeDiagnostic::valueLength},
};

template <>
constexpr auto jsonFieldsOf<AccessibilityDiagnosticPayload> = std::tuple{
    JsonField{"applicationName", &AccessibilityDiagnosticPayload::applicationName},
    JsonField{"bundleIdentifier", &AccessibilityDiagnosticPayload::bundleIdentifier},
    JsonField{"processIdentifier", &AccessibilityDiagnosticPayload::processIdentifier},
    JsonField{"relevantNodes", &AccessibilityDiagnosticPayload::relevantNodes},
    JsonField{"scannedNodeCount", &AccessibilityDiagnosticPayload::scannedNodeCount},
    JsonField{"truncated", &AccessibilityDiagnosticPayload::truncated},
};

template <>
constexpr auto jsonFieldsOf<CompatibilityDiagnosticPayload> = std::tuple{
    JsonField{"applicationName", &CompatibilityDiagnosticPayload::applicationName},
    JsonField{"bundleIdentifier", &CompatibilityDiagnosticPayload::bundleIdentifier},
    JsonField{"contextAfterLength", &CompatibilityDiagnosticPayload::contextAfterLength},
    JsonField{"contextBeforeLength", &CompatibilityDiagnosticPayload::contextBeforeLength},
    JsonField{"schemaVersion", &CompatibilityDiagnosticPayload::schemaVersion},
    JsonField{"selectionLength", &CompatibilityDiagnosticPayload::selectionLength},
    JsonField{"selectionMethod", &CompatibilityDiagnosticPayload::selectionMethod},
    JsonField{"selectionReadable", &CompatibilityDiagnosticPayload::selectionReadable},
    JsonField{"supportsDirectReplacement", &CompatibilityDiagnosticPayload::supportsDirectReplacement},
    JsonField{"usesClipboardFallback", &CompatibilityDiagnosticPayload::usesClipboardFallback},
};

std::string encodeJson(const AccessibilityDiagnosticPayload& payload, SlashEscaping slashes) {
    return encodeJsonRecord(payload, slashes);
}

std::string encodeJson(const CompatibilityDiagnosticPayload& payload, SlashEscaping slashes) {
    return encodeJsonRecord(payload, slashes);
}

std::optional<AccessibilityDiagnosticPayload> decodeAccessibilityDiagnostic(std::string_view bytes) {
    return decodeJsonRecord<AccessibilityDiagnosticPayload>(bytes);
}

std::optional<CompatibilityDiagnosticPayload> decodeCompatibilityDiagnostic(std::string_view bytes) {
    return decodeJsonRecord<CompatibilityDiagnosticPayload>(bytes);
}

}  // namespace lomaris
