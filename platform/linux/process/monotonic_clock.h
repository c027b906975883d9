#pragma once

#include "platform/scheduling.h"

namespace lomaris {

/// The time since the machine started, which no change of the date moves. Any thread.
[[nodiscard]] Moment monotonicNow();

/// Blocks until `deadline`, signals or not. Any thread.
void sleepUntil(Moment deadline);

/// `duration` after `moment`, or the last moment there is. `duration` is not negative.
[[nodiscard]] constexpr Moment later(Moment moment, Duration duration) {
    return duration > Moment::max() - moment ? Moment::max() : moment + duration;
}

}  // namespace lomaris
