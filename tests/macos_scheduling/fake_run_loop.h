#pragma once

#include <cstddef>
#include <functional>

// The run loop, the queues and the clock of macOS as far as the scheduling service calls them, in the terms of this
// system: enough to run that service where there is no macOS. One run loop, that of the thread that the program began
// with; turning it on another one ends the program.
namespace lomaris::test::fake_run_loop {

/// Puts something before the run loop that its next turn handles, like a message from another process. Any thread.
void post(std::function<void()> source);

/// While there is nothing to watch, a turn returns at once. At first there is.
void setWatchesNothing(bool watchesNothing);

/// Stops as many turns to come, each at once, as somebody may who shares the run loop.
void stopTurns(std::size_t count);

/// How often the run loop was turned.
[[nodiscard]] std::size_t turns();

/// While it is held, the global queue begins no work; what was queued meanwhile begins at the release. The release
/// returns once all of that has ended.
void holdGlobalQueue();
void releaseGlobalQueue();

/// Forgets what waits, for the next test.
void reset();

}  // namespace lomaris::test::fake_run_loop
