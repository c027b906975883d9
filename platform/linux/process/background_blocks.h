#pragma once

#include "platform/scheduling.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace lomaris {

/// Runs each block on its own thread, at low priority, and ends all of them when the scheduling service ends.
///
/// At that time a block may be in a long wait and refer to the service. `finish` cannot wait that long, cannot leave
/// the thread running (the service is about to be destroyed), and cannot cancel it (it may hold a lock). Instead, from
/// `finish` on, every sleep and timed wait returns at once, and the clock of this class jumps to the deadline of that
/// wait. The block therefore runs to its end at once, as if the time had passed, and `finish` returns after it.
class BackgroundBlocks {
public:
    BackgroundBlocks();
    BackgroundBlocks(const BackgroundBlocks&) = delete;
    BackgroundBlocks& operator=(const BackgroundBlocks&) = delete;
    ~BackgroundBlocks() { finish(); }

    /// Runs `block` on a new thread. Drops it after `finish`, or if no thread can be created. Any thread.
    void run(std::function<void()> block);

    /// Ends all waits, present and future, and blocks until every block has ended. Main thread.
    void finish();

    /// The clock of the platform: monotonic time, and ahead of it once `finish` has made it jump. Any thread.
    [[nodiscard]] Moment now() const;

    /// Sleeps until `deadline`. After `finish`, moves the clock to `deadline` instead. Any thread.
    void sleepUntil(Moment deadline);

    /// Creates a condition whose timed waits follow the same rule. It may outlive this object. Any thread.
    [[nodiscard]] std::shared_ptr<Condition> makeCondition();

private:
    class State;
    class JumpingCondition;

    // Shared with the threads and the conditions: a thread still uses it when it reports the end of its block.
    std::shared_ptr<State> state_;
};

}  // namespace lomaris
