#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace lomaris {

/// Reads the first `largest` bytes of a file. nullopt if it cannot be opened. After a read error, returns the bytes
/// read so far. Uses system calls and avoids iostream, which would link in locale data. Any thread.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path, std::size_t largest);

}  // namespace lomaris
