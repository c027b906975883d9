#include "platform/linux/process/monotonic_clock.h"

#include <cerrno>
#include <ctime>

namespace lomaris {

Moment monotonicNow() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void sleepUntil(Moment deadline) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(deadline);
    const timespec time{.tv_sec = seconds.count(), .tv_nsec = (deadline - seconds).count()};
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr) == EINTR) {
    }
}

}  // namespace lomaris
