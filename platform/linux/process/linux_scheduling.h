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

/// Real time, and the run loop of the main thread: a wait on the file descriptors of the services that must answer
/// other programs and on the main queue.
class LinuxScheduling final : public Scheduling, public RunLoop {
public:
    /// `endServices` brings the other services of the platform to their end when the process is told to end. Made on
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

    /// Ends all background blocks, which may use other services of the platform until then. To be called before those
    /// services end. Main thread.
    void finishBackgroundBlocks() { background_.finish(); }

    /// For the program that is the whole process; see `nativePlatform`.
    [[nodiscard]] Termination& termination() { return termination_; }

private:
    /// A descriptor that wakes the run loop when another thread queues a block; opened at the first slice.
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
    // Last, so that its blocks have ended before anything else goes.
    BackgroundBlocks background_;
};

}  // namespace lomaris
