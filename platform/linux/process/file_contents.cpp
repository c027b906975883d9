#include "platform/linux/process/file_contents.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace lomaris {

std::optional<std::string> readFile(const std::string& path, std::size_t largest) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return std::nullopt;
    }
    std::string contents;
    std::array<char, 16384> piece{};
    while (contents.size() < largest) {
        const ssize_t count = read(file, piece.data(), std::min(piece.size(), largest - contents.size()));
        if (count > 0) {
            contents.append(piece.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    close(file);
    return contents;
}

}  // namespace lomaris
