#pragma once

#include "platform/macos/background_blocks.h"
#include "platform/macos/main_queue.h"
#include "platform/macos/run_loop.h"
#include "platform/posix/termination.h"
#include "platform/scheduling.h"

#include <functional>
#include <memory>
#include <thread>
#include <utility>

namespace lomaris::macos {

/// Real time, the run loop of the main thread and the queues of the platform. In a program that embeds the library, the
/// program's own run loop serves the main queue as well.
class MacOSScheduling final : public Scheduling, public RunLoop {
public:
    /// `endServices` brings the other services of the platform to their end when the process is told to end. Made on
    /// the main thread.
    explicit MacOSScheduling(std::function<void()> endServices = [] {}) : termination_(std::move(endServices)) {}

    [[nodiscard]] Moment now() override { return background_.now(); }
    void sleep(Duration duration) override;
    void runLoopSlice(Duration duration) override;
    void runInBackground(std::function<void()> block) override { background_.run(std::move(block)); }
    void runOnMainQueue(std::function<void()> block) override { mainQueue_.post(std::move(block)); }
    [[nodiscard]] std::shared_ptr<Condition> makeCondition() override { return background_.makeCondition(); }
    [[nodiscard]] std::unique_ptr<TerminationGuard> onTermination(std::function<void()> cleanUp) override {
        return termination_.guard(std::move(cleanUp));
    }

    void serveWaiting(Duration patience) override;

    /// Ends all background blocks, which may use other services of the platform until then, and drops the main queue.
    /// To be called before those services end. Main thread.
    void finish();

    /// For the program that is the whole process; see `nativePlatform`.
    [[nodiscard]] Termination& termination() { return termination_; }

private:
    void sleepOnMainThread(Moment deadline);

    MainQueue mainQueue_;
    Termination termination_;
    const std::thread::id mainThread_ = std::this_thread::get_id();
    // Last, so that its blocks have ended before anything else goes.
    BackgroundBlocks background_;
};

}  // namespace lomaris::macos
