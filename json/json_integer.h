#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lomaris {

/// Decodes a JSON number as a signed 64-bit integer; 812, 812.0 and 8.12e2 are all 812. A number written with a
/// fraction or an exponent is an integer if the nearest double is one, so a fraction below the precision of a double is
/// dropped. From 2^53 on, its exact value must be an integer. Returns nullopt if the number is not an integer, is out
/// of range or is ill-formed.
[[nodiscard]] std::optional<std::int64_t> decodeJsonInteger(std::string_view written);

}  // namespace lomaris
