#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace lomaris {

/// The code points that form conjuncts (consonant, virama, consonant), each of which is one user-perceived character,
/// in Devanagari, Bengali, Gujarati, Oriya, Telugu and Malayalam. The tables are here because not every version of the
/// Unicode library has them, and character counts must not depend on the installed version.
namespace indic {

inline constexpr char32_t firstCodePoint = 0x0900;
inline constexpr char32_t lastCodePoint = 0x0D7F;

struct Range {
    char32_t first;
    char32_t last;
};

inline constexpr std::array consonantRanges{
    Range{0x0915, 0x0939}, Range{0x0958, 0x095F}, Range{0x0978, 0x097F},                         // Devanagari
    Range{0x0995, 0x09A8}, Range{0x09AA, 0x09B0}, Range{0x09B2, 0x09B2}, Range{0x09B6, 0x09B9},  // Bengali
    Range{0x09DC, 0x09DD}, Range{0x09DF, 0x09DF}, Range{0x09F0, 0x09F1},                         //
    Range{0x0A95, 0x0AA8}, Range{0x0AAA, 0x0AB0}, Range{0x0AB2, 0x0AB3}, Range{0x0AB5, 0x0AB9},  // Gujarati
    Range{0x0AF9, 0x0AF9},                                                                       //
    Range{0x0B15, 0x0B28}, Range{0x0B2A, 0x0B30}, Range{0x0B32, 0x0B33}, Range{0x0B35, 0x0B39},  // Oriya
    Range{0x0B5C, 0x0B5D}, Range{0x0B5F, 0x0B5F}, Range{0x0B71, 0x0B71},                         //
    Range{0x0C15, 0x0C28}, Range{0x0C2A, 0x0C39}, Range{0x0C58, 0x0C5A},                         // Telugu
    Range{0x0D15, 0x0D3A},                                                                       // Malayalam
};

using Bitmap = std::array<std::uint64_t, (lastCodePoint - firstCodePoint + 1) / 64>;

consteval Bitmap consonantBitmap() {
    Bitmap bitmap{};
    for (const Range& range : consonantRanges) {
        for (char32_t codePoint = range.first; codePoint <= range.last; ++codePoint) {
            const std::size_t bit = codePoint - firstCodePoint;
            bitmap[bit / 64] |= std::uint64_t{1} << (bit % 64);
        }
    }
    return bitmap;
}

inline constexpr Bitmap consonants = consonantBitmap();

[[nodiscard]] constexpr bool isConsonant(char32_t codePoint) {
    if (codePoint < firstCodePoint || codePoint > lastCodePoint) {
        return false;
    }
    const std::size_t bit = codePoint - firstCodePoint;
    return ((consonants[bit / 64] >> (bit % 64)) & 1U) != 0;
}

/// True if `codePoint` is the virama of one of these scripts, which joins the consonants before and after it.
[[nodiscard]] constexpr bool isLinker(char32_t codePoint) {
    switch (codePoint) {
        case 0x094D:
        case 0x09CD:
        case 0x0ACD:
        case 0x0B4D:
        case 0x0C4D:
        case 0x0D4D:
            return true;
        default:
            return false;
    }
}

}  // namespace indic
}  // namespace lomaris
