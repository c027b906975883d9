#pragma once

#include "platform/scheduling.h"

namespace lomaris {

/// The time of CLOCK_MONOTONIC, which changes of the system date do not affect. Any thread.
[[nodiscard]] Moment monotonicNow();

/// Blocks until `deadline`. Signals do not end the wait. Any thread.
void sleepUntil(Moment deadline);

/// `moment` plus `duration`, or `Moment::max()` on overflow. `duration` must not be negative.
[[nodiscard]] constexpr Moment later(Moment moment, Duration duration) {
    return duration > Moment::max() - moment ? Moment::max() : moment + duration;
}

}  // namespace lomaris
