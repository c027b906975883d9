#pragma once

#include "text/text.h"

#include <optional>
#include <string_view>

namespace lomaris {

/// The text that stands between the quotation marks of a JSON string. Nothing where it is ill-formed: bytes that are no
/// UTF-8, a raw control character, an unknown escape, an escaped half of a surrogate pair without its other half.
[[nodiscard]] std::optional<Text> decodeJsonString(std::string_view written);

}  // namespace lomaris
