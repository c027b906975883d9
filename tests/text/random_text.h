#pragma once

#include "text/text.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace lomaris::test {

/// Random texts, the same in every run and with every standard library. The standard fixes the output of the generator
/// but not of the distributions, so this class does without the distributions.
class RandomTexts {
public:
    explicit RandomTexts(std::uint32_t seed) : generator_(seed) {}

    /// Returns a number below `bound`.
    [[nodiscard]] std::size_t below(std::size_t bound);

    /// Returns up to `maximumPieces` pieces: runs of ASCII, line ends, code points that combine with their neighbors in
    /// different ways, halves of surrogate pairs, and arbitrary code points.
    [[nodiscard]] Text next(std::size_t maximumPieces);

    /// Returns up to `maximumPieces` pieces of bytes, most of them well-formed UTF-8.
    [[nodiscard]] std::string nextBytes(std::size_t maximumPieces);

private:
    [[nodiscard]] char32_t anyCodePoint();

    std::mt19937 generator_;
};

/// Appends a code point, which may be a surrogate, as UTF-16.
void append(Text& text, char32_t codePoint);

/// Returns the units in hexadecimal, for failure messages.
[[nodiscard]] std::string unitsOf(TextView text);

/// Returns the bytes in hexadecimal, for failure messages.
[[nodiscard]] std::string hexOf(std::string_view bytes);

}  // namespace lomaris::test
