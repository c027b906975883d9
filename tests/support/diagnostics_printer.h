#pragma once

#include "accessibility/model/diagnostics_json.h"

#include <ostream>

namespace lomaris {

/// Prints records as JSON if an assertion fails.
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
