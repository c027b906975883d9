#pragma once

#include "accessibility/model/diagnostics_json.h"

#include <ostream>

namespace lomaris {

/// How a failing assertion shows the records: as their JSON.
inline void PrintTo(const AccessibilityDiagnosticPayload& payload, std::ostream* stream) {
    *stream << encodeJson(payload, SlashEscaping::unescaped);
}

inline void PrintTo(const AccessibilityNodeDiagnostic& node, std::ostream* stream) {
    AccessibilityDiagnosticPayload payload;
    payload.relevantNodes = {node};
    PrintTo(payload, stream);
}

inline void PrintTo(const CompatibilityDiagnosticPayload& payload, std::ostream* stream) {
    *stream << encodeJson(payload, SlashEscaping::unescaped);
}

}  // namespace lomaris
