#pragma once

#include "platform/scheduling.h"

#include <functional>
#include <memory>

namespace lomaris::macos {

/// Runs blocks on the global queue of utility quality and ends them when their service ends.
///
/// A block may be in the middle of a long wait when its service ends, and it refers to that service. It can neither be
/// waited for (a wait may last seconds) nor left behind (what it refers to is about to be freed) nor broken off (it may
/// hold a lock). So at the end its waits cost nothing: every sleep and every timed wait returns at once, and the clock
/// that blocks see jumps to where the wait would have ended. The block runs on to its own end within microseconds, as
/// if its time had come. A block that the queue has not begun by then never runs.
class BackgroundBlocks {
public:
    BackgroundBlocks();
    BackgroundBlocks(const BackgroundBlocks&) = delete;
    BackgroundBlocks& operator=(const BackgroundBlocks&) = delete;
    ~BackgroundBlocks() { finish(); }

    /// Queues `block`. Dropped after `finish`. Any thread.
    void run(std::function<void()> block);

    /// Makes all waits cost nothing and returns once every block that runs has ended and all others are dropped. Main
    /// thread.
    void finish();

    /// The clock of the platform: real until `finish`, ahead of real time afterwards. Any thread.
    [[nodiscard]] Moment now() const;

    /// Sleeps until `deadline`, or jumps there. Any thread.
    void sleepUntil(Moment deadline);

    /// A condition whose timed waits follow the same rule. It may outlive this object. Any thread.
    [[nodiscard]] std::shared_ptr<Condition> makeCondition();

private:
    class State;
    class JumpingCondition;

    // Shared with the blocks and the conditions: the queue may come for a block when its service is gone.
    std::shared_ptr<State> state_;
};

}  // namespace lomaris::macos
