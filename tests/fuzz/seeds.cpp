// Writes the seeds of the fuzz targets, made from the reference cases and the scenarios, as files in one directory per
// target.

#include "tests/support/vectors.h"
#include "text/text.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace lomaris::test {
namespace {

/// A directory of seeds, which are numbered files. The constructor removes existing ones.
class Seeds {
public:
    Seeds(const std::filesystem::path& root, std::string_view target) : directory_(root / target) {
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
    }

    void add(std::string_view bytes) {
        std::ofstream file(directory_ / std::to_string(count_++), std::ios::binary);
        file << bytes;
        if (!file.flush()) {
            throw std::runtime_error("cannot write to " + directory_.string());
        }
    }

private:
    std::filesystem::path directory_;
    int count_ = 0;
};

std::string unitsAsBytes(const Text& text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit & 0xFFU));
        bytes.push_back(static_cast<char>(unit >> 8U));
    }
    return bytes;
}

/// Adds the bytes under a key of reference cases.
void addBytes(Seeds& seeds, std::string_view vectors, const char* key) {
    for (const auto& [line, value] : readVectors(vectors)) {
        seeds.add(bytesOf(value.at(key)));
    }
}

void addTexts(Seeds& seeds, std::string_view vectors, const char* key) {
    for (const auto& [line, value] : readVectors(vectors)) {
        seeds.add(unitsAsBytes(textOf(value.at(key))));
    }
}

/// Adds every command with every option, and the options with the numbers of the reference cases.
void addCommandLines(Seeds& seeds) {
    const std::string nul(1, '\0');
    for (const char* const word : {"permission-status", "read-selection", "replace-selection",
                                   "replace-selection-request", "diagnose-selection", "compatibility-check", "help"}) {
        for (const char* const option :
             {"", "--json", "--prompt", "--help", "-h", "--unknown", "--delay", "--replacement"}) {
            seeds.add(word + nul + option + nul);
        }
        seeds.add(word + nul + "--before-chars" + nul + "12" + nul + "--after-chars" + nul + "10000" + nul);
        seeds.add(word + nul + "--replacement" + nul + "caf\xC3\xA9" + nul + "--delay" + nul + "0.5" + nul);
    }
    for (const auto& [option, vectors] :
         {std::pair("--delay", "number-text"), std::pair("--after-chars", "integer-text")}) {
        for (const auto& [line, value] : readVectors(vectors)) {
            seeds.add("read-selection" + nul + option + nul + bytesOf(value.at("bytes")) + nul);
        }
    }
}

void addFiles(Seeds& seeds, const std::filesystem::path& directory) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && name.ends_with(".json") && !name.ends_with(".expected.json")) {
            std::ifstream file(entry.path(), std::ios::binary);
            seeds.add(std::string{std::istreambuf_iterator<char>(file), {}});
        }
    }
}

void writeSeeds(const std::filesystem::path& root) {
    Seeds commandLine(root, "command_line");
    addCommandLines(commandLine);
    Seeds request(root, "request");
    addBytes(request, "request-json", "bytes");
    Seeds selection(root, "selection");
    for (const auto& [line, value] : readVectors("selection-json")) {
        selection.add(bytesOf(value.at("expected").at("json")));
    }
    Seeds utf8(root, "utf8");
    addBytes(utf8, "utf8-repair", "bytes");
    addBytes(utf8, "utf8-validity", "bytes");
    Seeds encoding(root, "unicode_encoding");
    addBytes(encoding, "request-json", "bytes");
    addTexts(encoding, "character-count", "text");
    Seeds characters(root, "characters");
    addTexts(characters, "character-count", "text");
    addTexts(characters, "text-equality", "a");
    addTexts(characters, "identifier-prefix", "a");
    addTexts(characters, "editor-identifier", "text");
    Seeds desktopFile(root, "desktop_file");
    addFiles(desktopFile, LOMARIS_SCENARIOS);
}

}  // namespace
}  // namespace lomaris::test

int main(int argumentCount, char** arguments) {
    try {
        if (argumentCount != 2) {
            throw std::runtime_error("expected the directory to write to");
        }
        lomaris::test::writeSeeds(arguments[1]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
