#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace lomaris {

/// A span of time in whole nanoseconds, so that the waits of the tool are exact.
using Duration = std::chrono::nanoseconds;

/// A moment: time since an arbitrary start, the same for the whole process, never going back.
using Moment = std::chrono::nanoseconds;

/// A lock with a timed wait. `lock` and `unlock` make it usable with `std::lock_guard`. Any thread may use it.
class Condition {
public:
    Condition() = default;
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;
    virtual ~Condition() = default;

    virtual void lock() = 0;
    virtual void unlock() = 0;

    /// Releases the lock, waits for `broadcast` or until `deadline`, takes the lock again. Returns for either reason or
    /// for none; the caller looks at its state and at the clock. The lock must be held.
    virtual void waitUntil(Moment deadline) = 0;

    /// Wakes everyone who waits. The lock must be held.
    virtual void broadcast() = 0;
};

/// What must still be done when the process is told to end while something is under way. Ends with its owner. Main
/// thread.
class TerminationGuard {
public:
    TerminationGuard() = default;
    TerminationGuard(const TerminationGuard&) = delete;
    TerminationGuard& operator=(const TerminationGuard&) = delete;
    virtual ~TerminationGuard() = default;

    /// For what must not be left half done: a request that has come ends the process here and now; a later one waits
    /// until the guard goes, through all waits.
    virtual void holdOff() = 0;
};

/// Time, waits and queues. The only place where the tool reads a clock, sleeps or starts a thread. Never throws.
class Scheduling {
public:
    Scheduling() = default;
    Scheduling(const Scheduling&) = delete;
    Scheduling& operator=(const Scheduling&) = delete;
    virtual ~Scheduling() = default;

    /// The current moment. Any thread.
    [[nodiscard]] virtual Moment now() = 0;

    /// Blocks the calling thread for at least `duration`; returns at once where it is zero or less, but counts as a
    /// wait even then. Serves nothing meanwhile. Any thread.
    virtual void sleep(Duration duration) = 0;

    /// Turns the run loop of the main thread for exactly `duration`: serves requests for promised pasteboard data and
    /// runs the blocks of the main queue, and lasts its full time even when there is nothing to serve. Main thread
    /// only.
    virtual void runLoopSlice(Duration duration) = 0;

    /// Runs `block` on a background thread with utility priority; returns at once. The service shares ownership of what
    /// the block holds until it has run; a block that still waits when the service ends is abandoned or finished
    /// without touching anything freed. Any thread.
    virtual void runInBackground(std::function<void()> block) = 0;

    /// Queues `block` for the main queue, which only `runLoopSlice` serves; returns at once. A block that was never
    /// served is dropped when the service ends. Any thread.
    virtual void runOnMainQueue(std::function<void()> block) = 0;

    /// A new condition, which may outlive neither this service nor a background block that uses it. Any thread.
    [[nodiscard]] virtual std::shared_ptr<Condition> makeCondition() = 0;

    /// From the first guard on, a request to end this process is put off until the main thread waits next (`sleep`,
    /// `runLoopSlice`), a guard goes, or the process ends anyway, whichever is first: then `cleanUp` of the newest
    /// guard runs on the main thread, if there is one, the platform's services come to their end, and the process ends
    /// as it was told to. Main thread.
    [[nodiscard]] virtual std::unique_ptr<TerminationGuard> onTermination(std::function<void()> cleanUp) = 0;
};

}  // namespace lomaris
