#pragma once

#include "platform/scheduling.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/this_process.h"

#include <deque>
#include <functional>
#include <memory>

namespace lomaris::simulated {

/// The scheduling service of the simulated desktop: virtual time, and the run loop of this process.
class SimulatedScheduling final : public Scheduling {
public:
    SimulatedScheduling(Scheduler& scheduler, ThisProcess& process, Journal& journal)
        : scheduler_(scheduler), process_(process), journal_(journal) {}

    Moment now() override { return scheduler_.now(); }
    void sleep(Duration duration) override;
    void runLoopSlice(Duration duration) override;
    void runInBackground(std::function<void()> block) override;
    void runOnMainQueue(std::function<void()> block) override;
    std::shared_ptr<Condition> makeCondition() override;
    std::unique_ptr<TerminationGuard> onTermination(std::function<void()> cleanUp) override;

    /// Queues a request of another program that only this process's run loop serves.
    void requestService(std::function<void()> service);
    /// Drops the requests and blocks that are queued for the run loop.
    void dropQueues();

private:
    void passTime(Moment end);
    void serveRequests();
    void drainMainQueue();
    void wakeRunLoop();

    Scheduler& scheduler_;
    ThisProcess& process_;
    Journal& journal_;
    std::deque<std::function<void()>> requests_;
    std::deque<std::function<void()>> mainQueue_;
    bool isTurning_ = false;
    bool isDraining_ = false;
    unsigned conditionCount_ = 0;
};

}  // namespace lomaris::simulated
