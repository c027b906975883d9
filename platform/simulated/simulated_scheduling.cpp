#include "platform/simulated/simulated_scheduling.h"

#include "platform/simulated/describe.h"
#include "platform/simulated/simulated_condition.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace lomaris::simulated {

void SimulatedScheduling::sleep(Duration duration) {
    std::string& line = journal_.line(journal_.begin("sleep("));
    appendSeconds(line, duration);
    line += ')';
    if (duration > Duration::zero()) {
        scheduler_.park(scheduler_.momentAfter(duration));
    }
}

void SimulatedScheduling::runLoopSlice(Duration duration) {
    if (!scheduler_.isMainCurrent() || scheduler_.isActing()) {
        abortScenario("only the main thread turns the run loop");
    }
    std::string& line = journal_.line(journal_.begin("runLoopSlice("));
    appendSeconds(line, duration);
    line += ')';
    const Moment end = scheduler_.momentAfter(std::max(duration, Duration::zero()));
    while (true) {
        serveRequests();
        drainMainQueue();
        if (scheduler_.now() >= end) {
            return;
        }
        isTurning_ = true;
        scheduler_.park(end);
        isTurning_ = false;
    }
}

void SimulatedScheduling::runInBackground(std::function<void()> block) {
    const std::size_t call = journal_.begin("runInBackground() -> background ");
    const unsigned number = scheduler_.spawn(std::move(block));
    appendInteger(journal_.line(call), number);
}

void SimulatedScheduling::runOnMainQueue(std::function<void()> block) {
    journal_.begin("runOnMainQueue()");
    mainQueue_.push_back(std::move(block));
    wakeRunLoop();
}

std::shared_ptr<Condition> SimulatedScheduling::makeCondition() {
    const std::size_t call = journal_.begin("makeCondition() -> condition ");
    const unsigned number = ++conditionCount_;
    appendInteger(journal_.line(call), number);
    return std::make_shared<SimulatedCondition>(scheduler_, journal_, number);
}

void SimulatedScheduling::requestService(std::function<void()> service) {
    requests_.push_back(std::move(service));
    wakeRunLoop();
}

void SimulatedScheduling::serveRequests() {
    while (!requests_.empty()) {
        const std::function<void()> service = std::move(requests_.front());
        requests_.pop_front();
        service();
    }
}

void SimulatedScheduling::drainMainQueue() {
    // A block that turns the run loop itself does not let the next one begin before its own end.
    if (isDraining_) {
        return;
    }
    isDraining_ = true;
    while (!mainQueue_.empty()) {
        const std::function<void()> block = std::move(mainQueue_.front());
        mainQueue_.pop_front();
        block();
    }
    isDraining_ = false;
}

void SimulatedScheduling::wakeRunLoop() {
    if (isTurning_) {
        scheduler_.wakeMain();
    }
}

}  // namespace lomaris::simulated
