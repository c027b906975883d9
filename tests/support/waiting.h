#pragma once

#include <functional>

namespace lomaris::test {

/// Polls `isReached` until it returns true, or until a long timeout. Returns whether it was reached. For real
/// applications, which send no notification when they are ready.
[[nodiscard]] bool waitFor(const std::function<bool()>& isReached);

}  // namespace lomaris::test
