#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lomaris::simulator {

[[nodiscard]] std::string base64Of(std::string_view bytes);

/// The bytes behind Base64 with its padding, or nothing where it is none.
[[nodiscard]] std::optional<std::string> bytesOfBase64(std::string_view encoded);

}  // namespace lomaris::simulator
