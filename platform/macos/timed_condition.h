#pragma once

#include "platform/scheduling.h"

#include <condition_variable>
#include <mutex>

namespace lomaris::macos {

/// A lock with a timed wait on the monotonic clock. The standard library's own waits until a time of day on this
/// platform, which a change of the date moves. Any thread.
class TimedCondition {
public:
    TimedCondition() = default;
    TimedCondition(const TimedCondition&) = delete;
    TimedCondition& operator=(const TimedCondition&) = delete;

    void lock() { mutex_.lock(); }
    void unlock() { mutex_.unlock(); }

    /// Releases the lock, waits for `wakeAll` or until `deadline`, takes the lock again; may return for no reason. The
    /// lock must be held.
    void waitUntil(Moment deadline);

    /// The same without a deadline.
    void wait();

    void wakeAll() { changed_.notify_all(); }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
};

}  // namespace lomaris::macos
