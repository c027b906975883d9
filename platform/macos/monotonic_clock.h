#pragma once

#include "platform/scheduling.h"

#include <algorithm>

namespace lomaris::macos {

/// The time that the machine has been awake. Unaffected by changes of the system time. Any thread.
[[nodiscard]] Moment monotonicNow();

/// `duration` after `moment`, at most `Moment::max()`. A negative `duration` counts as zero.
[[nodiscard]] constexpr Moment later(Moment moment, Duration duration) {
    return moment + std::min(std::max(duration, Duration::zero()), Moment::max() - moment);
}

/// Blocks until `deadline`, even if signals arrive. Any thread.
void sleepUntil(Moment deadline);

}  // namespace lomaris::macos
