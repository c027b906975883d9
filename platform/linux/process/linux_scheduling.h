#pragma once

#include "platform/linux/process/background_blocks.h"
#include "platform/linux/process/run_loop.h"
#include "platform/posix/termination.h"
#include "platform/scheduling.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace lomaris {

/// The scheduling service of a Linux desktop: monotonic time, background threads, and the run loop of the main thread,
/// which polls the file descriptors of other services and runs the main queue.
///
/// This folder has what the other folders of `platform/linux/` need of the operating system: time and run loop (this
/// header, `run_loop.h`, `monotonic_clock.h`, `descriptor_wait.h`), processes and files (`linux_process.h`,
/// `file_contents.h`), locale and desktop entries (`process_locale.h`, `desktop_entry.h`). It may use `posix/`, and has
/// no D-Bus and no X11.
///
/// Invariants:
/// 1. Handlers of descriptors and blocks of the main queue run only on the main thread, inside `runLoopSlice`.
/// 2. `sleep` and `runLoopSlice` on the main thread honor a request to end the process
///    (`platform/posix/termination.h`).
/// 3. No background block runs after `finishBackgroundBlocks`.
class LinuxScheduling final : public Scheduling, public RunLoop {
public:
    /// `endServices` ends the other services of the platform if the process is requested to end. To be constructed on
    /// the main thread.
    explicit LinuxScheduling(std::function<void()> endServices = [] {});
    ~LinuxScheduling() override;

    [[nodiscard]] Moment now() override { return background_.now(); }
    void sleep(Duration duration) override;
    void runLoopSlice(Duration duration) override;
    void runInBackground(std::function<void()> block) override { background_.run(std::move(block)); }
    void runOnMainQueue(std::function<void()> block) override;
    [[nodiscard]] std::shared_ptr<Condition> makeCondition() override { return background_.makeCondition(); }
    [[nodiscard]] std::unique_ptr<TerminationGuard> onTermination(std::function<void()> cleanUp) override {
        return termination_.guard(std::move(cleanUp));
    }

    void addReader(int descriptor, std::function<void()> serve) override;
    void removeReader(int descriptor) override;

    /// Ends all background blocks; see `BackgroundBlocks`. To be called before the other services of the platform are
    /// destroyed, as the blocks may use them. Main thread.
    void finishBackgroundBlocks() { background_.finish(); }

    /// The state of requests to end the process. Used by `nativePlatform` if the program owns the process.
    [[nodiscard]] Termination& termination() { return termination_; }

private:
    /// A descriptor that wakes the run loop when another thread queues a block. Opened in the first slice.
    class WakeUp;
    using Reader = std::shared_ptr<const std::function<void()>>;

    void serveReaders();
    void serveMainQueue(Moment deadline);
    [[nodiscard]] std::function<void()> takeBlock();
    void waitForInput(Moment deadline);
    void sleepOnMainThread(Moment deadline);

    std::map<int, Reader> readers_;
    std::mutex mainQueueMutex_;
    std::deque<std::function<void()>> mainQueue_;
    std::unique_ptr<WakeUp> wakeUp_;
    Termination termination_;
    const std::thread::id mainThread_ = std::this_thread::get_id();
    // The last member: its destructor ends the blocks before the other members are destroyed.
    BackgroundBlocks background_;
};

}  // namespace lomaris
