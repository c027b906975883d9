#pragma once

#include "text/text.h"

#include <cstddef>
#include <cstdint>

namespace lomaris {

/// Finds where user-perceived characters begin, by the rules for extended grapheme clusters. It is told the code
/// points of a text one after the other and remembers no more of them than the rules look back on: the class of the
/// last one, and how far a pair of flags letters, a joined pictograph or an Indic conjunct has come.
///
/// No rule looks back beyond the beginning of the current character, so a fresh breaker may start at any boundary.
/// A plain value; it owns nothing and may be used from any thread.
class CharacterBreaker {
public:
    /// Takes the next code point and answers whether it begins a character. The first one always does.
    [[nodiscard]] bool beginsCharacter(char32_t codePoint);

    /// Forgets what came before in favour of an ASCII unit, which makes the run that it ends skippable: whatever
    /// follows an ASCII unit depends on nothing in front of it.
    void continueAfterAscii(char16_t unit);

private:
    /// How far "pictograph, extending marks, joiner" has come.
    enum class Pictograph : std::uint8_t { none, seen, joined };
    /// How far "consonant, marks with a virama among them" has come.
    enum class Conjunct : std::uint8_t { none, consonant, linked };

    [[nodiscard]] bool breaksBefore(int breakClass, char32_t codePoint) const;
    void remember(int breakClass, int combiningClass, char32_t codePoint);

    int lastClass_ = 0;
    bool flagIsHalf_ = false;
    Pictograph pictograph_ = Pictograph::none;
    Conjunct conjunct_ = Conjunct::none;
};

/// Where the character that begins at `position` ends. `position` must be a character boundary of `text`, its end
/// included.
[[nodiscard]] std::size_t characterEnd(TextView text, std::size_t position);

}  // namespace lomaris
