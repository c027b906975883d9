#pragma once

#include "accessibility/model/diagnostics.h"
#include "accessibility/model/json_writer.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// The records as JSON bytes, without a line feed at the end: keys are the field names, sorted; an absent field is left
/// out, an empty array is not.
[[nodiscard]] std::string encodeJson(const AccessibilityDiagnosticPayload& payload, SlashEscaping slashes);
[[nodiscard]] std::string encodeJson(const CompatibilityDiagnosticPayload& payload, SlashEscaping slashes);

/// The records from JSON bytes. An optional field may be missing or null; unknown keys are ignored; nothing where a
/// required key is missing or a value has the wrong type or is out of range.
[[nodiscard]] std::optional<AccessibilityDiagnosticPayload> decodeAccessibilityDiagnostic(std::string_view bytes);
[[nodiscard]] std::optional<CompatibilityDiagnosticPayload> decodeCompatibilityDiagnostic(std::string_view bytes);

}  // namespace lomaris
