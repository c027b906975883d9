#pragma once

#include "text/text.h"

namespace lomaris {

/// Whether the two texts are canonically equivalent, the equality of all guards and verifications. Half a surrogate
/// pair is compared as U+FFFD.
[[nodiscard]] bool canonicallyEqual(TextView a, TextView b);

/// Whether `text` begins with `prefix`, character by character: the prefix must end at a character boundary of `text`
/// ("e" is no prefix of "e" followed by a combining accent), and characters are compared under canonical equivalence.
/// Letter case counts. An empty prefix is a prefix of every text.
[[nodiscard]] bool hasCharacterPrefix(TextView text, TextView prefix);

}  // namespace lomaris
