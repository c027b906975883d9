#include "platform/linux/x11/application_name.h"

#include "platform/linux/process/desktop_entry.h"
#include "platform/linux/process/file_contents.h"
#include "platform/linux/process/process_locale.h"

#include <algorithm>
#include <cstdlib>

namespace lomaris {

namespace {

constexpr std::size_t largestEntry = std::size_t{1} << 20U;

std::string environmentOr(const char* name, const std::string& fallback) {
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : fallback;
}

/// True if `name`, which another program chose, is safe as the name of a file: no path and not hidden.
bool isPlainFileName(std::string_view name) {
    return !name.empty() && name.size() <= 200 && name.front() != '.' &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

std::string inSmallLetters(std::string text) {
    std::ranges::transform(text, text.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return text;
}

}  // namespace

std::vector<std::string> dataDirectoriesOfProcess() {
    std::vector<std::string> directories;
    const auto add = [&](std::string_view directory) {
        // The XDG base directories require that relative paths are ignored.
        if (directory.starts_with('/')) {
            directories.emplace_back(directory);
        }
    };
    add(environmentOr("XDG_DATA_HOME", environmentOr("HOME", "") + "/.local/share"));
    const std::string list = environmentOr("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    std::string_view rest = list;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        add(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return directories;
}

std::optional<std::string> desktopEntryName(std::string_view entry, std::span<const std::string> dataDirectories,
                                            std::span<const std::string> languages) {
    if (!isPlainFileName(entry)) {
        return std::nullopt;
    }
    for (const std::string& directory : dataDirectories) {
        const auto contents = readFile(directory + "/applications/" + std::string(entry) + ".desktop", largestEntry);
        if (contents) {
            return nameInDesktopEntry(*contents, languages);
        }
    }
    return std::nullopt;
}

std::optional<std::string> installedApplicationName(std::string_view applicationIdentifier,
                                                    const WindowClass& windowClass) {
    const std::vector<std::string> directories = dataDirectoriesOfProcess();
    const std::vector<std::string> languages = languageTagsOfProcess();
    for (const std::string& entry : {std::string(applicationIdentifier), windowClass.className,
                                     inSmallLetters(windowClass.className), windowClass.instanceName}) {
        if (auto name = desktopEntryName(entry, directories, languages)) {
            return name;
        }
    }
    return std::nullopt;
}

}  // namespace lomaris
