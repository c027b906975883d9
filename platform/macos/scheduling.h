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

/// Real time, the run loop of the main thread, and the platform's queues. In a program that embeds the library, the
/// program's own run loop also serves the main queue.
class MacOSScheduling final : public Scheduling, public RunLoop {
public:
    /// `endServices` ends the other services of the platform when the end of the process is requested. Must be
    /// constructed on the main thread.
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
    /// Must be called before those services end. Main thread only.
    void finish();

    /// For the command-line tool only; see `ProcessRole`.
    [[nodiscard]] Termination& termination() { return termination_; }

private:
    void sleepOnMainThread(Moment deadline);

    MainQueue mainQueue_;
    Termination termination_;
    const std::thread::id mainThread_ = std::this_thread::get_id();
    // Last member, so that its blocks end before any other member is destroyed.
    BackgroundBlocks background_;
};

}  // namespace lomaris::macos
