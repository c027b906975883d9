#include "platform/linux/process/desktop_entry.h"

#include <algorithm>
#include <iterator>

namespace lomaris {

namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Removes the first line from `contents` and returns it, without leading and trailing blanks.
std::string_view takeLine(std::string_view& contents) {
    const std::size_t end = contents.find('\n');
    const std::string_view line = contents.substr(0, end);
    contents = end == std::string_view::npos ? std::string_view{} : contents.substr(end + 1);
    return trimmed(line);
}

std::string withoutEscapes(std::string_view value) {
    std::string result;
    for (std::size_t index = 0; index < value.size(); ++index) {
        if (value[index] != '\\' || index + 1 == value.size()) {
            result += value[index];
            continue;
        }
        const char escaped = value[++index];
        switch (escaped) {
            case 's':
                result += ' ';
                break;
            case 'n':
                result += '\n';
                break;
            case 't':
                result += '\t';
                break;
            case 'r':
                result += '\r';
                break;
            case '\\':
                result += '\\';
                break;
            default:
                result += '\\';
                result += escaped;
        }
    }
    return result;
}

/// The language of a key "Name[de_AT]"; empty for "Name"; nullopt for any other key.
std::optional<std::string_view> languageOfNameKey(std::string_view key) {
    constexpr std::string_view name = "Name";
    if (!key.starts_with(name)) {
        return std::nullopt;
    }
    key.remove_prefix(name.size());
    if (key.empty()) {
        return key;
    }
    if (key.size() < 3 || key.front() != '[' || key.back() != ']') {
        return std::nullopt;
    }
    return key.substr(1, key.size() - 2);
}

/// The best name read so far. The rank is the index of its language; the name without a locale ranks last.
struct BestName {
    std::ptrdiff_t rank = 0;
    std::optional<std::string> name;

    void offer(std::string_view language, std::string_view value, std::span<const std::string> languages) {
        const auto found = std::ranges::find(languages, language);
        if ((found == languages.end() && !language.empty()) || value.empty()) {
            return;
        }
        const std::ptrdiff_t offered = std::distance(languages.begin(), found);
        if (!name || offered < rank) {
            rank = offered;
            name = withoutEscapes(value);
        }
    }
};

}  // namespace

std::optional<std::string> nameInDesktopEntry(std::string_view contents, std::span<const std::string> languages) {
    BestName best;
    bool isApplication = false;
    bool isHidden = false;
    bool isInGroup = false;
    while (!contents.empty()) {
        const std::string_view line = takeLine(contents);
        if (line.starts_with('[')) {
            isInGroup = line == "[Desktop Entry]";
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!isInGroup || line.starts_with('#') || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        if (key == "Type") {
            isApplication = value == "Application";
        } else if (key == "Hidden") {
            isHidden = value == "true";
        } else if (const auto language = languageOfNameKey(key)) {
            best.offer(*language, value, languages);
        }
    }
    return isApplication && !isHidden ? best.name : std::nullopt;
}

}  // namespace lomaris
