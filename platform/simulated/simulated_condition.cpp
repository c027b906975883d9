#include "platform/simulated/simulated_condition.h"

#include "platform/simulated/describe.h"

#include <optional>
#include <string>
#include <utility>

namespace lomaris::simulated {

void SimulatedCondition::lock() {
    Scheduler::Worker& self = scheduler_.current();
    if (holder_ == nullptr) {
        holder_ = &self;
        return;
    }
    if (holder_ == &self) {
        abortScenario("a thread takes a lock that it holds");
    }
    lockQueue_.push_back(&self);
    scheduler_.park(std::nullopt);
}

void SimulatedCondition::unlock() {
    requireLock();
    if (lockQueue_.empty()) {
        holder_ = nullptr;
        return;
    }
    holder_ = lockQueue_.front();
    lockQueue_.pop_front();
    scheduler_.wake(*holder_);
}

void SimulatedCondition::waitUntil(Moment deadline) {
    requireLock();
    // Locks need no `admits`: they have no effect outside this process, so they work even after it has ended.
    if (journal_.admits()) {
        std::string& line = journal_.line(journal_.begin("waitUntil(condition "));
        appendInteger(line, number_);
        line += ", ";
        appendSeconds(line, deadline);
        line += ')';
    }
    Scheduler::Worker& self = scheduler_.current();
    unlock();
    if (deadline > scheduler_.now()) {
        waiters_.push_back(&self);
        scheduler_.park(deadline);
        std::erase(waiters_, &self);
    }
    lock();
}

void SimulatedCondition::broadcast() {
    requireLock();
    if (journal_.admits()) {
        std::string& line = journal_.line(journal_.begin("broadcast(condition "));
        appendInteger(line, number_);
        line += ')';
    }
    for (Scheduler::Worker* waiter : std::exchange(waiters_, {})) {
        scheduler_.wake(*waiter);
    }
}

void SimulatedCondition::requireLock() const {
    if (holder_ != &scheduler_.current()) {
        abortScenario("a thread uses a condition whose lock it does not hold");
    }
}

}  // namespace lomaris::simulated
