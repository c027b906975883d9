#pragma once

#include "text/text.h"

namespace lomaris {

/// True if the two texts are canonically equivalent. All comparisons of selections use this equality. Half a surrogate
/// pair is compared as U+FFFD.
[[nodiscard]] bool canonicallyEqual(TextView a, TextView b);

/// True if `text` begins with `prefix`, character by character. The prefix must end at a character boundary of `text`
/// ("e" is no prefix of "e" followed by a combining accent), and characters are compared by canonical equivalence.
/// Case-sensitive. An empty prefix is a prefix of every text.
[[nodiscard]] bool hasCharacterPrefix(TextView text, TextView prefix);

}  // namespace lomaris
