#pragma once

#include <cstddef>

// The shield without Objective-C: catches C++ exceptions only, and its pools only count their temporary objects.
namespace lomaris::test::fake_shield {

/// For use by the fake platform functions: adds a temporary object to the innermost pool of this thread. Without a pool
/// it would leak, so the program is aborted.
void leaveTemporary();

/// The largest number of objects in any one pool since the last `reset`, on all threads.
[[nodiscard]] std::size_t mostInOnePool();
void reset();

}  // namespace lomaris::test::fake_shield
