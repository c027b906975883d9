#pragma once

#include "text/text.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace lomaris::test {

/// Random texts, the same in every run and on every standard library: the generator's output is fixed by the standard,
/// the distributions' is not, so numbers are reduced by hand.
class RandomTexts {
public:
    explicit RandomTexts(std::uint32_t seed) : generator_(seed) {}

    /// A number below `bound`.
    [[nodiscard]] std::size_t below(std::size_t bound);

    /// Up to `maximumPieces` pieces: runs of ASCII, line ends, code points that combine with their neighbours in every
    /// way that there is, halves of surrogate pairs, and code points from anywhere.
    [[nodiscard]] Text next(std::size_t maximumPieces);

    /// Bytes of which most, but not all, are well-formed UTF-8.
    [[nodiscard]] std::string nextBytes(std::size_t maximumPieces);

private:
    [[nodiscard]] char32_t anyCodePoint();

    std::mt19937 generator_;
};

/// Appends a code point, a surrogate included, as UTF-16.
void append(Text& text, char32_t codePoint);

/// The units in hexadecimal, for failure messages.
[[nodiscard]] std::string unitsOf(TextView text);

/// The bytes in hexadecimal, for failure messages.
[[nodiscard]] std::string hexOf(std::string_view bytes);

}  // namespace lomaris::test
