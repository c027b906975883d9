#pragma once

#include <sys/types.h>

#include <cstddef>
#include <vector>

namespace lomaris::test {

/// The other processes that run this program on this desktop: the keepers of pasteboards.
[[nodiscard]] std::vector<pid_t> successors();

/// Waits until there are only `count` of them. Returns false after a timeout.
[[nodiscard]] bool successorsBecome(std::size_t count);

}  // namespace lomaris::test
