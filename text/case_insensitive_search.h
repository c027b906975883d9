#pragma once

#include "text/text.h"

#include <cstdint>
#include <string_view>

namespace lomaris {

/// How upper-case and lower-case letters are paired.
enum class CaseRules : std::uint8_t {
    /// The language-independent rules of Unicode: "I" is the upper case of "i".
    common,
    /// The rules of Turkish and Azeri: "I" is the upper case of "\u0131" (dotless), "\u0130" (dotted) that of "i".
    turkic,
};

/// Returns the case rules of a language, given by its ISO 639-1 code ("tr"). Returns `common` if the code is unknown or
/// empty.
[[nodiscard]] CaseRules caseRulesOf(std::string_view language);

/// True if `text` contains `word`, ignoring case. Characters are compared by canonical equivalence, and a match begins
/// and ends at boundaries of user-perceived characters: "e" with a combining accent followed by "ditor" does not
/// contain "editor". An empty word is contained in every text that is not empty.
[[nodiscard]] bool containsIgnoringCase(TextView text, TextView word, CaseRules rules);

}  // namespace lomaris
