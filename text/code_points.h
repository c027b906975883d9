#pragma once

#include "text/text.h"

#include <cstddef>

namespace lomaris {

/// Replaces everything that is not a character: half a surrogate pair, an ill-formed byte sequence.
inline constexpr char32_t replacementCharacter = U'\uFFFD';

/// One code point of a text, and the number of UTF-16 units that encode it (1 or 2).
struct CodePoint {
    char32_t value = 0;
    std::size_t units = 0;
};

[[nodiscard]] constexpr bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
[[nodiscard]] constexpr bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }
[[nodiscard]] constexpr bool isSurrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }

/// Returns the code point that begins at `position`, which must be less than the size of `text`. Half a surrogate pair
/// is read as U+FFFD.
[[nodiscard]] constexpr CodePoint codePointAt(TextView text, std::size_t position) {
    const char16_t unit = text[position];
    if (!isSurrogate(unit)) {
        return {unit, 1};
    }
    const bool hasPartner = isHighSurrogate(unit) && position + 1 < text.size() && isLowSurrogate(text[position + 1]);
    if (!hasPartner) {
        return {replacementCharacter, 1};
    }
    const char32_t high = unit & 0x3FFU;
    const char32_t low = text[position + 1] & 0x3FFU;
    return {0x10000 + (high << 10U) + low, 2};
}

}  // namespace lomaris
