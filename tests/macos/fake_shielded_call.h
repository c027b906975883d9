#pragma once

#include <cstddef>

// The shield without Objective-C: no exceptions but those of C++, and pools that only count what would be left to them.
namespace lomaris::test::fake_shield {

/// For the doubles: leaves a temporary object to the innermost pool of this thread. Without one it would stay for good,
/// which ends the program.
void leaveTemporary();

/// The most that any one pool held since the last `reset`. All threads.
[[nodiscard]] std::size_t mostInOnePool();
void reset();

}  // namespace lomaris::test::fake_shield
