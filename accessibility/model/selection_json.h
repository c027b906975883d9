#pragma once

#include "accessibility/model/input_activity.h"
#include "accessibility/model/json_value.h"
#include "accessibility/model/json_writer.h"
#include "accessibility/model/selection.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// The payload as JSON bytes, without a line feed at the end: keys are the field names, sorted; an absent field is left
/// out.
[[nodiscard]] std::string encodeJson(const SelectionPayload& payload, SlashEscaping slashes);

/// A payload from JSON bytes. An optional field may be missing or null; unknown keys are ignored; nothing where a
/// required key is missing or a value has the wrong type or is out of range.
[[nodiscard]] std::optional<SelectionPayload> decodeSelectionPayload(std::string_view bytes);

/// The records that stand inside of others, as the value that comes next.
void writeJson(JsonWriter& writer, const SelectionRangePayload& range);
void writeJson(JsonWriter& writer, const InputActivitySnapshot& activity);
[[nodiscard]] std::optional<SelectionRangePayload> decodeSelectionRange(const JsonValue& value);
[[nodiscard]] std::optional<InputActivitySnapshot> decodeInputActivity(const JsonValue& value);

}  // namespace lomaris
