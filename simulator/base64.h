#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lomaris::simulator {

[[nodiscard]] std::string base64Of(std::string_view bytes);

/// Decodes padded Base64. Returns nullopt if it is invalid.
[[nodiscard]] std::optional<std::string> bytesOfBase64(std::string_view encoded);

}  // namespace lomaris::simulator
