#pragma once

#include "text/text.h"

#include <optional>
#include <string_view>

namespace lomaris {

/// Decodes the contents of a JSON string, without the quotation marks. Returns nullopt if it is ill-formed: invalid
/// UTF-8, a raw control character, an unknown escape, or an escaped half of a surrogate pair without its other half.
[[nodiscard]] std::optional<Text> decodeJsonString(std::string_view written);

}  // namespace lomaris
