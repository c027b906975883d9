#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

// One of these declares mkdtemp.
#include <stdlib.h>
#include <unistd.h>

namespace lomaris::test {

/// A directory of its own, empty at first, removed with everything in it at the end.
class TemporaryDirectory {
public:
    /// Throws where none can be made.
    TemporaryDirectory() {
        // The last six letters are what the system puts its own in the place of.
        std::string pattern = (std::filesystem::temp_directory_path() / "lomaris-test.").string() + std::string(6, 'X');
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary directory");
        }
        path_ = pattern;
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace lomaris::test
