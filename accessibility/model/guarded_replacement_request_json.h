#pragma once

#include "accessibility/model/guarded_replacement_request.h"
#include "accessibility/model/json_writer.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// The request as JSON bytes, without a line feed at the end: keys are the field names, sorted; an absent field is left
/// out. The service never writes one; callers that are built on this library do.
[[nodiscard]] std::string encodeJson(const GuardedReplacementRequest& request, SlashEscaping slashes);

/// A request from JSON bytes. An optional field may be missing or null; unknown keys are ignored; nothing where a
/// required key is missing or a value has the wrong type or is out of range. What the values are is not looked at:
/// empty texts and negative positions are requests like others.
[[nodiscard]] std::optional<GuardedReplacementRequest> decodeGuardedReplacementRequest(std::string_view bytes);

}  // namespace lomaris
