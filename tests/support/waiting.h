#pragma once

#include <functional>

namespace lomaris::test {

/// Asks again and again until `isReached` answers yes, or gives up after a time that no healthy machine needs; whether
/// it was reached. Real applications tell nobody when they are ready.
[[nodiscard]] bool waitFor(const std::function<bool()>& isReached);

}  // namespace lomaris::test
