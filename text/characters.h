#pragma once

#include "text/text.h"

#include <cstdint>

namespace lomaris {

/// Returns the number of user-perceived characters (extended grapheme clusters) of `text`. An Indic conjunct counts as
/// one character. Half a surrogate pair counts as one character, U+FFFD.
[[nodiscard]] std::int64_t characterCount(TextView text);

}  // namespace lomaris
