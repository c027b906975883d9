#pragma once

#include "accessibility/model/diagnostics.h"
#include "json/json_writer.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Encodes a record as JSON in UTF-8, without a final line feed. Keys are the field names, sorted. Absent fields are
/// omitted; empty arrays are not.
[[nodiscard]] std::string encodeJson(const AccessibilityDiagnosticPayload& payload, SlashEscaping slashes);
[[nodiscard]] std::string encodeJson(const CompatibilityDiagnosticPayload& payload, SlashEscaping slashes);

/// Decodes a record from JSON. An optional field may be missing or null; unknown keys are ignored. Returns nullopt if a
/// required key is missing, or if a value has the wrong type or is out of range.
[[nodiscard]] std::optional<AccessibilityDiagnosticPayload> decodeAccessibilityDiagnostic(std::string_view bytes);
[[nodiscard]] std::optional<CompatibilityDiagnosticPayload> decodeCompatibilityDiagnostic(std::string_view bytes);

}  // namespace lomaris
