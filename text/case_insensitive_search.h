#pragma once

#include "text/text.h"

#include <cstdint>
#include <string_view>

namespace lomaris {

/// Which letters are the upper and the lower case of each other.
enum class CaseRules : std::uint8_t {
    /// Those of Unicode without a language: "I" is the upper case of "i".
    common,
    /// Those of Turkish and Azeri: "I" is the upper case of "\u0131", the letter without a dot, and "\u0130", the one
    /// with a dot, that of "i".
    turkic,
};

/// The rules of a language, given by its ISO 639-1 code ("tr"). An unknown or empty one has the common rules.
[[nodiscard]] CaseRules caseRulesOf(std::string_view language);

/// Whether `text` contains `word` regardless of letter case. Canonically equivalent texts are the same, and a match
/// begins and ends between user-perceived characters: there is no "editor" in "e" with an accent and "ditor". An empty
/// word is contained in every text that is not empty.
[[nodiscard]] bool containsIgnoringCase(TextView text, TextView word, CaseRules rules);

}  // namespace lomaris
