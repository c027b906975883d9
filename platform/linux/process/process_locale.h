#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lomaris {

/// The language tags that a localised name is looked for under, best first, for a locale such as "de_AT.UTF-8@euro":
/// "de_AT@euro", "de_AT", "de@euro", "de". Empty for the locales "C" and "POSIX" and for an empty one.
[[nodiscard]] std::vector<std::string> languageTags(std::string_view locale);

/// The tags for the language of this process's messages: the first non-empty one of LC_ALL, LC_MESSAGES and LANG.
[[nodiscard]] std::vector<std::string> languageTagsOfProcess();

/// The language whose letters this process uses, such as "tr": that of the first non-empty one of LC_ALL, LC_CTYPE and
/// LANG. Empty for the locales "C" and "POSIX" and without a locale.
[[nodiscard]] std::string characterLanguageOfProcess();

}  // namespace lomaris
