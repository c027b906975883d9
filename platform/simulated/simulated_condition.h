#pragma once

#include "platform/scheduling.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/scheduler.h"

#include <deque>
#include <vector>

namespace lomaris::simulated {

/// A condition between workers. Workers get the lock in the order in which they called `lock`.
class SimulatedCondition final : public Condition {
public:
    SimulatedCondition(Scheduler& scheduler, Journal& journal, unsigned number)
        : scheduler_(scheduler), journal_(journal), number_(number) {}

    void lock() override;
    void unlock() override;
    void waitUntil(Moment deadline) override;
    void broadcast() override;

private:
    void requireLock() const;

    Scheduler& scheduler_;
    Journal& journal_;
    unsigned number_;
    Scheduler::Worker* holder_ = nullptr;
    std::deque<Scheduler::Worker*> lockQueue_;
    std::vector<Scheduler::Worker*> waiters_;
};

}  // namespace lomaris::simulated
