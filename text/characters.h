#pragma once

#include "text/text.h"

#include <cstdint>

namespace lomaris {

/// The number of user-perceived characters (extended grapheme clusters) of `text`, the rule that keeps Indic conjuncts
/// together included. Half a surrogate pair counts as U+FFFD, a character of its own.
[[nodiscard]] std::int64_t characterCount(TextView text);

}  // namespace lomaris
