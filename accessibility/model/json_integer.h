#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lomaris {

/// A JSON number as a signed 64-bit integer, where its value is one: 812, 812.0 and 8.12e2 are. With a fraction or an
/// exponent the nearest double decides whether it is, so a fraction that no double can tell from an integer does not
/// count. Nothing where the number has a fraction, lies outside of the range or is ill-formed.
[[nodiscard]] std::optional<std::int64_t> decodeJsonInteger(std::string_view written);

}  // namespace lomaris
