#pragma once

#include "platform/scheduling.h"

#include <condition_variable>
#include <mutex>

namespace lomaris::macos {

/// A lock with a timed wait on the monotonic clock. The standard library's timed waits on this platform use the system
/// time, so a change of the date would move the deadline. Thread-safe.
class TimedCondition {
public:
    TimedCondition() = default;
    TimedCondition(const TimedCondition&) = delete;
    TimedCondition& operator=(const TimedCondition&) = delete;

    void lock() { mutex_.lock(); }
    void unlock() { mutex_.unlock(); }

    /// Releases the lock, waits for `wakeAll` or until `deadline`, and takes the lock again. May return early for no
    /// reason. The lock must be held.
    void waitUntil(Moment deadline);

    /// Waits without a deadline. The lock must be held.
    void wait();

    void wakeAll() { changed_.notify_all(); }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
};

}  // namespace lomaris::macos
