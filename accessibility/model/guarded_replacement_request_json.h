#pragma once

#include "accessibility/model/guarded_replacement_request.h"
#include "json/json_writer.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Encodes the request as JSON in UTF-8, without a final line feed. Keys are the field names, sorted. Absent fields are
/// omitted. Meant for programs that embed the library; the service itself only decodes requests.
[[nodiscard]] std::string encodeJson(const GuardedReplacementRequest& request, SlashEscaping slashes);

/// Decodes a request from JSON. An optional field may be missing or null; unknown keys are ignored. Returns nullopt if
/// a required key is missing, or if a value has the wrong type or is out of range. Does not validate the values
/// otherwise: empty texts and negative positions are accepted.
[[nodiscard]] std::optional<GuardedReplacementRequest> decodeGuardedReplacementRequest(std::string_view bytes);

}  // namespace lomaris
