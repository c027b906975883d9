// Replays every file in the given directories, in the order of their paths.

#include "tests/fuzz/fuzz_target.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<std::filesystem::path> filesIn(const std::vector<std::string>& directories) {
    std::vector<std::filesystem::path> files;
    for (const std::string& directory : directories) {
        const std::size_t before = files.size();
        for (const auto& entry : std::filesystem::directory_iterator(directory)) {
            if (entry.is_regular_file()) {
                files.push_back(entry.path());
            }
        }
        if (files.size() == before) {
            throw std::runtime_error("no inputs in " + directory);
        }
    }
    std::ranges::sort(files);
    return files;
}

std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string contents{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad()) {
        throw std::runtime_error("cannot be read");
    }
    return contents;
}

/// Returns the number of inputs that failed.
int replay(const std::vector<std::filesystem::path>& files) {
    int failures = 0;
    for (const auto& file : files) {
        try {
            lomaris::test::tryInput(contentsOf(file));
        } catch (const std::exception& error) {
            std::cerr << file.string() << ": " << error.what() << '\n';
            ++failures;
        }
    }
    return failures;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    try {
        const auto files = filesIn({arguments + 1, arguments + argumentCount});
        if (files.empty()) {
            throw std::runtime_error("expected directories with inputs");
        }
        const int failures = replay(files);
        std::cout << files.size() << " inputs, " << failures << " of them failed\n";
        return failures == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
