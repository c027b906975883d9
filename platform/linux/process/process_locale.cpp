#include "platform/linux/process/process_locale.h"

#include <cstdlib>

namespace lomaris {

namespace {

/// Truncates `text` before the first `separator` and returns the rest, including the separator.
std::string_view splitOff(std::string_view& text, char separator) {
    const std::size_t position = std::min(text.find(separator), text.size());
    const std::string_view rest = text.substr(position);
    text = text.substr(0, position);
    return rest;
}

/// The locale that the environment sets for a category. Empty if there is none.
std::string_view localeOfProcess(const char* category) {
    for (const char* const name : {"LC_ALL", category, "LANG"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

}  // namespace

std::vector<std::string> languageTags(std::string_view locale) {
    const std::string modifier(splitOff(locale, '@'));
    splitOff(locale, '.');
    const std::string country(splitOff(locale, '_'));
    const std::string language(locale);
    if (language.empty() || language == "C" || language == "POSIX") {
        return {};
    }
    std::vector<std::string> tags;
    if (!country.empty() && !modifier.empty()) {
        tags.push_back(language + country + modifier);
    }
    if (!country.empty()) {
        tags.push_back(language + country);
    }
    if (!modifier.empty()) {
        tags.push_back(language + modifier);
    }
    tags.push_back(language);
    return tags;
}

std::vector<std::string> languageTagsOfProcess() { return languageTags(localeOfProcess("LC_MESSAGES")); }

std::string characterLanguageOfProcess() {
    const std::vector<std::string> tags = languageTags(localeOfProcess("LC_CTYPE"));
    return tags.empty() ? std::string() : tags.back();
}

}  // namespace lomaris
