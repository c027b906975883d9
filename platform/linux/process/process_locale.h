#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lomaris {

/// The keys under which a desktop entry may have a localized name, best first. For "de_AT.UTF-8@euro": "de_AT@euro",
/// "de_AT", "de@euro", "de". Empty if `locale` is "C", "POSIX" or empty.
[[nodiscard]] std::vector<std::string> languageTags(std::string_view locale);

/// The same for the locale of this process's messages: the first non-empty one of LC_ALL, LC_MESSAGES and LANG.
[[nodiscard]] std::vector<std::string> languageTagsOfProcess();

/// The language of this process's character classification ("tr"), from the first non-empty one of LC_ALL, LC_CTYPE and
/// LANG. Empty if that is "C" or "POSIX", or if none is set.
[[nodiscard]] std::string characterLanguageOfProcess();

}  // namespace lomaris
