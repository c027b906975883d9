#pragma once

#include "text/text.h"

#include <cstddef>
#include <cstdint>

namespace lomaris {

/// Finds the boundaries of user-perceived characters by the Unicode rules for extended grapheme clusters. The caller
/// passes the code points of a text one by one. The breaker keeps only the state that the rules need: the class of the
/// last code point and its progress through a regional indicator pair, a joined pictograph or an Indic conjunct.
///
/// No rule depends on code points before the current character, so a new breaker may start at any boundary. A plain
/// value that owns nothing; different breakers may be used on different threads.
class CharacterBreaker {
public:
    /// Processes the next code point. Returns true if it begins a character, which the first one always does.
    [[nodiscard]] bool beginsCharacter(char32_t codePoint);

    /// Resets the state as if the last code point were the ASCII character `unit`. Lets the caller skip a run of ASCII
    /// that ends with `unit`, because a boundary after an ASCII character does not depend on anything before it.
    void continueAfterAscii(char16_t unit);

private:
    /// Progress through "pictograph, extending marks, joiner".
    enum class Pictograph : std::uint8_t { none, seen, joined };
    /// Progress through "consonant, marks with a virama among them".
    enum class Conjunct : std::uint8_t { none, consonant, linked };

    [[nodiscard]] bool breaksBefore(int breakClass, char32_t codePoint) const;
    void remember(int breakClass, int combiningClass, char32_t codePoint);

    int lastClass_ = 0;
    bool flagIsHalf_ = false;
    Pictograph pictograph_ = Pictograph::none;
    Conjunct conjunct_ = Conjunct::none;
};

/// Returns the end of the character that begins at `position`, as an index in UTF-16 units. `position` must be a
/// character boundary of `text`; the end of `text` is allowed and is returned unchanged.
[[nodiscard]] std::size_t characterEnd(TextView text, std::size_t position);

}  // namespace lomaris
