#include "platform/macos/timed_condition.h"

#include "platform/macos/monotonic_clock.h"

#include <pthread.h>

#include <algorithm>

namespace lomaris::macos {

void TimedCondition::waitUntil(Moment deadline) {
    // Longer waits return early, and the caller waits again.
    constexpr Duration longest = std::chrono::hours(1);
    const Duration left = std::min(deadline, monotonicNow() + longest) - monotonicNow();
    if (left <= Duration::zero()) {
        return;
    }
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    const timespec time{.tv_sec = seconds.count(), .tv_nsec = (left - seconds).count()};
    pthread_cond_timedwait_relative_np(changed_.native_handle(), mutex_.native_handle(), &time);
}

void TimedCondition::wait() { pthread_cond_wait(changed_.native_handle(), mutex_.native_handle()); }

}  // namespace lomaris::macos
