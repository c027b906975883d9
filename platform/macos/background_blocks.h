#pragma once

#include "platform/scheduling.h"

#include <functional>
#include <memory>

namespace lomaris::macos {

/// Runs blocks on the global queue of utility quality, and ends them when the service ends.
///
/// A block may be in a long wait when the service ends, and it uses that service. Waiting for the block may take
/// seconds; leaving it running would let it access freed objects; cancelling it could leave a lock held. Therefore
/// `finish` makes all its waits return at once: sleeps and timed waits end, and the clock that blocks read jumps to the
/// wait's deadline. The block then runs to its own end within microseconds, as if the time had passed. A block that the
/// queue has not begun by then never runs.
class BackgroundBlocks {
public:
    BackgroundBlocks();
    BackgroundBlocks(const BackgroundBlocks&) = delete;
    BackgroundBlocks& operator=(const BackgroundBlocks&) = delete;
    ~BackgroundBlocks() { finish(); }

    /// Queues `block`; dropped after `finish`. Any thread.
    void run(std::function<void()> block);

    /// Makes all waits return at once, drops the blocks that have not begun, and returns when all others have ended.
    /// Main thread only.
    void finish();

    /// The platform's clock: real until `finish`, possibly ahead of real time afterwards. Any thread.
    [[nodiscard]] Moment now() const;

    /// Sleeps until `deadline`; after `finish`, moves the clock there at once. Any thread.
    void sleepUntil(Moment deadline);

    /// Creates a condition whose timed waits follow the same rule. It may outlive this object. Any thread.
    [[nodiscard]] std::shared_ptr<Condition> makeCondition();

private:
    class State;
    class JumpingCondition;

    // Shared with the blocks and the conditions, because the queue may begin a block after this object was destroyed.
    std::shared_ptr<State> state_;
};

}  // namespace lomaris::macos
