#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

// One of these headers declares mkdtemp.
#include <stdlib.h>
#include <unistd.h>

namespace lomaris::test {

/// A new, empty directory, which is removed with its contents on destruction.
class TemporaryDirectory {
public:
    /// Throws if the directory cannot be created.
    TemporaryDirectory() {
        // mkdtemp replaces the last six letters.
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
