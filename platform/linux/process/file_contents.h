#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace lomaris {

/// The first bytes of a file, at most `largest` of them, or nothing if it cannot be opened. A failure while reading
/// ends what is there. The system's own calls and no stream of the library: that one would bring the locales of the
/// world into the tool. Any thread.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path, std::size_t largest);

}  // namespace lomaris
