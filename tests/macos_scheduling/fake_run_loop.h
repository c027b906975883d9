#pragma once

#include <cstddef>
#include <functional>

// A fake of the run loop, the queues and the clock of macOS, as far as the scheduling service uses them, so that the
// service can run on other systems. There is one run loop, that of the main thread; running it on another thread aborts
// the program.
namespace lomaris::test::fake_run_loop {

/// Adds a source that the next run of the run loop handles, like a message from another process. Any thread.
void post(std::function<void()> source);

/// If true, the run loop has no sources and returns at once. False by default.
void setWatchesNothing(bool watchesNothing);

/// Makes the next `count` runs of the run loop stop at once, as other code in the process could.
void stopTurns(std::size_t count);

/// How often the run loop was run.
[[nodiscard]] std::size_t turns();

/// While it is held, the global queue begins no work. Releasing it runs the work that was queued in the meantime, and
/// returns when that has ended.
void holdGlobalQueue();
void releaseGlobalQueue();

/// Runs or drops all pending work, for the next test.
void reset();

}  // namespace lomaris::test::fake_run_loop
