#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace lomaris {

/// A span of time in whole nanoseconds, so that waits are exact.
using Duration = std::chrono::nanoseconds;

/// A point in time: nanoseconds since an arbitrary start, the same for the whole process. Never decreases.
using Moment = std::chrono::nanoseconds;

/// A lock with a timed wait. `lock` and `unlock` make it usable with `std::lock_guard`. Thread-safe.
class Condition {
public:
    Condition() = default;
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;
    virtual ~Condition() = default;

    virtual void lock() = 0;
    virtual void unlock() = 0;

    /// Releases the lock, waits for `broadcast` or until `deadline`, and takes the lock again. May also return for
    /// neither reason, so the caller must check its own state and the clock. The lock must be held.
    virtual void waitUntil(Moment deadline) = 0;

    /// Wakes all waiting threads. The lock must be held.
    virtual void broadcast() = 0;
};

/// Registers a clean-up function for as long as it exists; see `Scheduling::onTermination`. Main thread only.
class TerminationGuard {
public:
    TerminationGuard() = default;
    TerminationGuard(const TerminationGuard&) = delete;
    TerminationGuard& operator=(const TerminationGuard&) = delete;
    virtual ~TerminationGuard() = default;

    /// Begins work that must not be left half done: ends the process now if its termination was requested, and defers
    /// later requests, through all waits, until this guard is destroyed.
    virtual void holdOff() = 0;
};

/// Time, waits and queues. The only service that reads a clock, sleeps or starts a thread. Never throws.
class Scheduling {
public:
    Scheduling() = default;
    Scheduling(const Scheduling&) = delete;
    Scheduling& operator=(const Scheduling&) = delete;
    virtual ~Scheduling() = default;

    /// The current time. Any thread.
    [[nodiscard]] virtual Moment now() = 0;

    /// Blocks the calling thread for at least `duration`, without running blocks or serving requests. Returns at once
    /// if `duration` is zero or negative, but still counts as a wait. Any thread.
    virtual void sleep(Duration duration) = 0;

    /// Runs the run loop of the main thread for exactly `duration`, even if there is nothing to do: serves requests for
    /// promised pasteboard data and runs the blocks of the main queue. Main thread only.
    virtual void runLoopSlice(Duration duration) = 0;

    /// Runs `block` on a background thread with utility priority; returns at once. If the service ends first, a block
    /// that is queued or waiting is dropped or run to its end; it never accesses an object that was freed. What the
    /// block owns is released when it has run or was dropped. Any thread.
    virtual void runInBackground(std::function<void()> block) = 0;

    /// Queues `block` for the main queue; returns at once. `runLoopSlice` runs the queue; on some platforms, so does
    /// the run loop of a program that embeds the library. A block that has not run when the service ends is dropped.
    /// Any thread.
    virtual void runOnMainQueue(std::function<void()> block) = 0;

    /// Creates a condition, which must not be used after this service has ended. Any thread.
    [[nodiscard]] virtual std::shared_ptr<Condition> makeCondition() = 0;

    /// Registers `cleanUp` for as long as the returned guard exists. From the first guard on, a request to end this
    /// process is deferred until the main thread next waits (`sleep`, `runLoopSlice`), a guard is destroyed or the
    /// platform ends, whichever is first. Then the `cleanUp` of the newest guard, if any, runs on the main thread, the
    /// platform's services end, and the process ends as requested. Guards have no effect for `ProcessRole::host`. Main
    /// thread only.
    [[nodiscard]] virtual std::unique_ptr<TerminationGuard> onTermination(std::function<void()> cleanUp) = 0;
};

}  // namespace lomaris
