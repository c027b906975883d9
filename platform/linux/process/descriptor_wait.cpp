#include "platform/linux/process/descriptor_wait.h"

#include "platform/linux/process/monotonic_clock.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>

namespace lomaris {

bool awaitReady(int descriptor, short events, Moment deadline) {
    int timeout = -1;
    if (deadline != Moment::max()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - monotonicNow());
        if (left.count() <= 0) {
            return false;
        }
        timeout = static_cast<int>(std::min<std::int64_t>(left.count(), std::numeric_limits<int>::max()));
    }
    pollfd request{.fd = descriptor, .events = events, .revents = 0};
    return poll(&request, 1, timeout) != 0;
}

}  // namespace lomaris
