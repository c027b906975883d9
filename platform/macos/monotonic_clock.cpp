#include "platform/macos/monotonic_clock.h"

#include <ctime>

namespace lomaris::macos {

Moment monotonicNow() { return Moment(static_cast<Moment::rep>(clock_gettime_nsec_np(CLOCK_UPTIME_RAW))); }

void sleepUntil(Moment deadline) {
    for (Duration left = deadline - monotonicNow(); left > Duration::zero(); left = deadline - monotonicNow()) {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
        const timespec time{.tv_sec = seconds.count(), .tv_nsec = (left - seconds).count()};
        nanosleep(&time, nullptr);
    }
}

}  // namespace lomaris::macos
