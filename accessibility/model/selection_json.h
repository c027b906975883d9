#pragma once

#include "accessibility/model/selection.h"
#include "json/json_writer.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Encodes the payload as JSON in UTF-8, without a final line feed. Keys are the field names, sorted. Absent fields are
/// omitted.
[[nodiscard]] std::string encodeJson(const SelectionPayload& payload, SlashEscaping slashes);

/// Decodes a payload from JSON. An optional field may be missing or null; unknown keys are ignored. Returns nullopt if
/// a required key is missing, or if a value has the wrong type or is out of range.
[[nodiscard]] std::optional<SelectionPayload> decodeSelectionPayload(std::string_view bytes);

}  // namespace lomaris
