#pragma once

#include "platform/scheduling.h"

#include <algorithm>

namespace lomaris::macos {

/// The time that the machine has been awake, which no change of the date moves. Any thread.
[[nodiscard]] Moment monotonicNow();

/// `duration` after `moment`, which is `moment` where it is negative; the last moment there is where that is nearer.
[[nodiscard]] constexpr Moment later(Moment moment, Duration duration) {
    return moment + std::min(std::max(duration, Duration::zero()), Moment::max() - moment);
}

/// Blocks until `deadline`, signals or not. Any thread.
void sleepUntil(Moment deadline);

}  // namespace lomaris::macos
