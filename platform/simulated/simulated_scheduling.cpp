#include "platform/simulated/simulated_scheduling.h"

#include "platform/simulated/describe.h"
#include "platform/simulated/meanwhile.h"
#include "platform/simulated/simulated_condition.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace lomaris::simulated {

void SimulatedScheduling::sleep(Duration duration) {
    const Moment end = scheduler_.momentAfter(std::max(duration, Duration::zero()));
    if (!journal_.admits()) {
        passTime(end);
        return;
    }
    std::string& line = journal_.line(journal_.begin("sleep("));
    appendSeconds(line, duration);
    line += ')';
    if (!scheduler_.isMainCurrent()) {
        passTime(end);
        return;
    }
    process_.passWait();
    if (scheduler_.now() < end) {
        process_.waitUntil(end);
    }
}

void SimulatedScheduling::runLoopSlice(Duration duration) {
    if (!scheduler_.isMainCurrent() || scheduler_.isActing()) {
        abortScenario("only the main thread turns the run loop");
    }
    const Moment end = scheduler_.momentAfter(std::max(duration, Duration::zero()));
    if (!journal_.admits()) {
        passTime(end);
        return;
    }
    std::string& line = journal_.line(journal_.begin("runLoopSlice("));
    appendSeconds(line, duration);
    line += ')';
    process_.passWait();
    while (true) {
        serveRequests();
        drainMainQueue();
        process_.passWait();
        if (scheduler_.now() >= end) {
            return;
        }
        const Meanwhile turning(isTurning_, true);
        process_.waitUntil(end);
    }
}

void SimulatedScheduling::runInBackground(std::function<void()> block) {
    if (!journal_.admits()) {
        return;
    }
    const std::size_t call = journal_.begin("runInBackground() -> background ");
    const unsigned number = scheduler_.spawn(std::move(block));
    appendInteger(journal_.line(call), number);
}

void SimulatedScheduling::runOnMainQueue(std::function<void()> block) {
    if (!journal_.admits()) {
        return;
    }
    journal_.begin("runOnMainQueue()");
    mainQueue_.push_back(std::move(block));
    wakeRunLoop();
}

std::shared_ptr<Condition> SimulatedScheduling::makeCondition() {
    const unsigned number = ++conditionCount_;
    if (journal_.admits()) {
        appendInteger(journal_.line(journal_.begin("makeCondition() -> condition ")), number);
    }
    return std::make_shared<SimulatedCondition>(scheduler_, journal_, number);
}

std::unique_ptr<TerminationGuard> SimulatedScheduling::onTermination(std::function<void()> cleanUp) {
    if (journal_.admits()) {
        journal_.begin("onTermination()");
    }
    return process_.guard(std::move(cleanUp));
}

void SimulatedScheduling::requestService(std::function<void()> service) {
    requests_.push_back(std::move(service));
    wakeRunLoop();
}

void SimulatedScheduling::dropQueues() {
    requests_.clear();
    mainQueue_.clear();
}

void SimulatedScheduling::passTime(Moment end) {
    if (scheduler_.now() < end) {
        scheduler_.park(end);
    }
}

void SimulatedScheduling::serveRequests() {
    while (!requests_.empty()) {
        const std::function<void()> service = std::move(requests_.front());
        requests_.pop_front();
        service();
    }
}

void SimulatedScheduling::drainMainQueue() {
    // If a block runs the run loop itself, the next block still waits for the end of the first.
    if (isDraining_) {
        return;
    }
    const Meanwhile draining(isDraining_, true);
    while (!mainQueue_.empty()) {
        const std::function<void()> block = std::move(mainQueue_.front());
        mainQueue_.pop_front();
        block();
    }
}

void SimulatedScheduling::wakeRunLoop() {
    if (isTurning_) {
        scheduler_.wakeMain();
    }
}

}  // namespace lomaris::simulated
