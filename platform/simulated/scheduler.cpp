#include "platform/simulated/scheduler.h"

#include "platform/simulated/meanwhile.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace lomaris::simulated {

void abortScenario(const char* reason) {
    std::fprintf(stderr, "simulated desktop: %s\n", reason);
    std::abort();
}

Scheduler::Scheduler() {
    main_ = &workers_.emplace_back();
    main_->begun = true;
    current_ = main_;
}

Scheduler::~Scheduler() { finish(); }

unsigned Scheduler::currentNumber() const { return current_->number; }

void Scheduler::at(Moment moment, std::function<void()> action) {
    timers_.emplace(TimerKey{moment, TimerKind::action, timerCount_++}, Timer{std::move(action), nullptr});
}

void Scheduler::runDueTimersOfActions() {
    // An action may add others, so the first timer is determined anew each time.
    while (!timers_.empty()) {
        const auto first = timers_.begin();
        if (first->second.worker != nullptr || std::get<Moment>(first->first) > now_) {
            return;
        }
        const std::function<void()> action = std::move(first->second.action);
        timers_.erase(first);
        act(action);
    }
}

void Scheduler::act(const std::function<void()>& action) {
    const Meanwhile acting(acting_, acting_ + 1);
    action();
}

void Scheduler::actAfter(Duration delay, const std::function<void()>& action) {
    if (delay > Duration::zero()) {
        at(momentAfter(delay), action);
    } else {
        act(action);
    }
}

void Scheduler::park(std::optional<Moment> deadline) {
    if (acting_ > 0) {
        abortScenario("an action of the user must not wait");
    }
    Worker& self = *current_;
    self.parked = true;
    if (deadline) {
        const TimerKey key{*deadline, TimerKind::worker, timerCount_++};
        self.timer = timers_.emplace(key, Timer{nullptr, &self}).first;
    }
    Worker& next = pickNext();
    if (&next == &self) {
        return;
    }
    giveBaton(next);
    awaitBaton(self);
}

void Scheduler::wake(Worker& worker) {
    if (!worker.parked) {
        return;
    }
    worker.parked = false;
    if (worker.timer) {
        timers_.erase(*worker.timer);
        worker.timer.reset();
    }
    ready_.push_back(&worker);
}

Scheduler::Worker& Scheduler::pickNext() {
    while (true) {
        runDueActions();
        if (!ready_.empty()) {
            Worker& next = *ready_.front();
            ready_.pop_front();
            return next;
        }
        if (timers_.empty()) {
            abortScenario("everybody waits for something that cannot come");
        }
        now_ = std::max(now_, std::get<Moment>(timers_.begin()->first));
        runDueActions();
        while (!timers_.empty() && std::get<Moment>(timers_.begin()->first) <= now_) {
            wake(*timers_.begin()->second.worker);
        }
    }
}

void Scheduler::giveBaton(Worker& worker) {
    current_ = &worker;
    if (!worker.begun) {
        worker.begun = true;
        worker.thread = std::thread([this, &worker] { run(worker); });
        return;
    }
    const std::lock_guard guard(handOver_);
    worker.hasBaton = true;
    worker.baton.notify_one();
}

void Scheduler::awaitBaton(Worker& worker) {
    std::unique_lock guard(handOver_);
    worker.baton.wait(guard, [&worker] { return worker.hasBaton; });
    worker.hasBaton = false;
}

unsigned Scheduler::spawn(std::function<void()> block) {
    const unsigned number = ++blockCount_;
    if (finishing_) {
        return number;
    }
    reapFinished();
    Worker& worker = workers_.emplace_back();
    worker.number = number;
    worker.block = std::move(block);
    ready_.push_back(&worker);
    return number;
}

void Scheduler::run(Worker& worker) {
    ++unfinished_;
    worker.block();
    worker.block = nullptr;
    --unfinished_;
    if (finishing_ && unfinished_ == 0) {
        wake(*main_);
    }
    Worker& next = pickNext();
    worker.finished = true;
    giveBaton(next);
}

void Scheduler::reapFinished() {
    workers_.remove_if([](Worker& worker) {
        if (!worker.finished) {
            return false;
        }
        worker.thread.join();
        return true;
    });
}

void Scheduler::finish() {
    std::erase_if(timers_, [](const auto& timer) { return timer.second.worker == nullptr; });
    finishBlocks();
}

void Scheduler::finishBlocks() {
    finishing_ = true;
    std::erase_if(ready_, [](const Worker* worker) { return !worker->begun; });
    for (Worker& worker : workers_) {
        if (!worker.begun) {
            worker.block = nullptr;
        }
    }
    if (unfinished_ > 0) {
        park(std::nullopt);
    }
    reapFinished();
}

void Scheduler::runAllActions() {
    while (!timers_.empty()) {
        now_ = std::max(now_, std::get<Moment>(timers_.begin()->first));
        runDueActions();
    }
}

}  // namespace lomaris::simulated
