#pragma once

#include "text/text.h"

namespace lomaris {

/// Whether `text` contains `word` regardless of letter case. Canonically equivalent texts are the same, and a match
/// begins and ends between user-perceived characters: there is no "editor" in "e" with an accent and "ditor". Folds
/// case as Unicode does without a language ("I" is "i"). An empty word is contained in every text that is not empty.
[[nodiscard]] bool containsIgnoringCase(TextView text, TextView word);

}  // namespace lomaris
