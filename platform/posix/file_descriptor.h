#pragma once

#include <unistd.h>

#include <utility>

namespace lomaris {

/// Owns a file descriptor, or none, and closes it. Any thread.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            number_ = std::exchange(other.number_, -1);
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }

    [[nodiscard]] explicit operator bool() const { return number_ >= 0; }
    /// Negative if there is none.
    [[nodiscard]] int number() const { return number_; }

    void reset() {
        if (number_ >= 0) {
            close(std::exchange(number_, -1));
        }
    }

private:
    int number_ = -1;
};

}  // namespace lomaris
