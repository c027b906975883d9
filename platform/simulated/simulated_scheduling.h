#pragma once

#include "platform/scheduling.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/scheduler.h"

#include <deque>
#include <functional>

namespace lomaris::simulated {

class SimulatedScheduling final : public Scheduling {
public:
    SimulatedScheduling(Scheduler& scheduler, Journal& journal) : scheduler_(scheduler), journal_(journal) {}

    Moment now() override { return scheduler_.now(); }
    void sleep(Duration duration) override;
    void runLoopSlice(Duration duration) override;
    void runInBackground(std::function<void()> block) override;
    void runOnMainQueue(std::function<void()> block) override;
    std::shared_ptr<Condition> makeCondition() override;

    /// Another program wants something of this process that only its run loop gives.
    void requestService(std::function<void()> service);

private:
    void serveRequests();
    void drainMainQueue();
    void wakeRunLoop();

    Scheduler& scheduler_;
    Journal& journal_;
    std::deque<std::function<void()>> requests_;
    std::deque<std::function<void()>> mainQueue_;
    bool isTurning_ = false;
    bool isDraining_ = false;
    unsigned conditionCount_ = 0;
};

}  // namespace lomaris::simulated
