#pragma once

#include "platform/scheduling.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace lomaris {

/// Runs blocks on threads of their own, at low priority, and ends them when their service ends.
///
/// A block may be in the middle of a long wait when its service ends, and it refers to that service. It can neither be
/// waited for (a wait may last seconds) nor left behind (what it refers to is about to be freed) nor broken off (it may
/// hold a lock). So at the end its waits cost nothing: every sleep and every timed wait returns at once, and the clock
/// that blocks see jumps to where the wait would have ended. The block runs on to its own end within microseconds, as
/// if its time had come, and the service ends after it.
class BackgroundBlocks {
public:
    BackgroundBlocks();
    BackgroundBlocks(const BackgroundBlocks&) = delete;
    BackgroundBlocks& operator=(const BackgroundBlocks&) = delete;
    ~BackgroundBlocks() { finish(); }

    /// Runs `block` on a new thread. Dropped after `finish`, and where the system has no thread to give. Any thread.
    void run(std::function<void()> block);

    /// Makes all waits cost nothing and returns once every block has ended. Main thread.
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

    // Shared with the threads and the conditions: a thread touches it once more after its block was counted out.
    std::shared_ptr<State> state_;
};

}  // namespace lomaris
