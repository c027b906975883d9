#pragma once

#include <sys/types.h>

#include <cstddef>
#include <vector>

namespace lomaris::test {

/// The processes that run this program on this desktop, apart from this one: what a pasteboard left behind.
[[nodiscard]] std::vector<pid_t> successors();

/// Whether only as many are left, after a while.
[[nodiscard]] bool successorsBecome(std::size_t count);

}  // namespace lomaris::test
