#pragma once

#include "text/text.h"

#include <cstddef>
#include <string_view>

namespace lomaris::test {

/// Returns the bytes as UTF-16 units, low byte first. Ignores an odd last byte.
[[nodiscard]] inline Text unitsFromBytes(std::string_view bytes) {
    Text text;
    for (std::size_t position = 0; position + 1 < bytes.size(); position += 2) {
        const auto low = static_cast<unsigned char>(bytes[position]);
        const auto high = static_cast<unsigned char>(bytes[position + 1]);
        text.push_back(static_cast<char16_t>(high << 8U | low));
    }
    return text;
}

}  // namespace lomaris::test
