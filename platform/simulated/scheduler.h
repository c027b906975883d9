#pragma once

#include "platform/scheduling.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <tuple>

namespace lomaris::simulated {

/// Prints `reason` to standard error and aborts, because the scenario itself is wrong.
[[noreturn]] void abortScenario(const char* reason);

/// Virtual time, and the choice of the thread that runs.
///
/// The threads of a scenario are workers. Exactly one worker has the baton and runs; only that worker may access the
/// state of the simulated desktop, which therefore needs no lock. A worker that waits passes the baton to the first
/// worker that is ready; if there is none, the clock moves to the next moment at which something happens. A mutex
/// guards only the transfer of the baton.
class Scheduler {
public:
    struct Worker;

    Scheduler();
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;
    ~Scheduler();

    [[nodiscard]] Moment now() const { return now_; }
    /// The moment `duration` from now, or `Moment::max()` if that is out of range.
    [[nodiscard]] Moment momentAfter(Duration duration) const {
        return duration > Moment::max() - now_ ? Moment::max() : now_ + duration;
    }

    /// The worker that has the baton.
    [[nodiscard]] Worker& current() { return *current_; }
    [[nodiscard]] bool isMainCurrent() const { return current_ == main_; }
    /// Number of the background block that has the baton; 0 for the main thread.
    [[nodiscard]] unsigned currentNumber() const;

    /// Schedules an action of the user. If `moment` is in the past, the action runs at the next opportunity.
    void at(Moment moment, std::function<void()> action);
    /// Runs the actions that are due.
    void runDueActions() {
        if (!timers_.empty()) {
            runDueTimersOfActions();
        }
    }
    /// Runs an action of the user or of another program, which must not wait.
    void act(const std::function<void()>& action);
    /// Runs the action after a delay, or at once if the delay is not positive.
    void actAfter(Duration delay, const std::function<void()>& action);
    [[nodiscard]] bool isActing() const { return acting_ > 0; }

    /// Suspends the current worker until it is woken or until `deadline`, which must be in the future.
    void park(std::optional<Moment> deadline);
    /// Makes a suspended worker ready; does nothing for any other.
    void wake(Worker& worker);
    void wakeMain() { wake(*main_); }

    /// Creates a background block, which begins once the earlier workers wait. Returns its number, from 1.
    unsigned spawn(std::function<void()> block);

    /// Drops the actions, and the blocks that have not begun, then runs the other blocks to their end. Blocks that are
    /// spawned later never begin. Called on the main thread, which is the only one left afterwards.
    void finish();
    /// Like `finish`, but keeps the actions.
    void finishBlocks();
    /// Runs all remaining actions, moving time from one to the next. No other worker may be waiting.
    void runAllActions();

private:
    enum class TimerKind { action, worker };
    using TimerKey = std::tuple<Moment, TimerKind, std::uint64_t>;
    struct Timer {
        std::function<void()> action;
        Worker* worker = nullptr;
    };
    using Timers = std::map<TimerKey, Timer>;

    void runDueTimersOfActions();
    Worker& pickNext();
    void giveBaton(Worker& worker);
    void awaitBaton(Worker& worker);
    void run(Worker& worker);
    void reapFinished();

    std::mutex handOver_;
    Moment now_{0};
    Timers timers_;
    std::uint64_t timerCount_ = 0;
    std::list<Worker> workers_;
    std::deque<Worker*> ready_;
    Worker* main_ = nullptr;
    Worker* current_ = nullptr;
    unsigned blockCount_ = 0;
    unsigned unfinished_ = 0;
    int acting_ = 0;
    bool finishing_ = false;

public:
    /// One thread of the scenario. The transfer mutex guards `hasBaton`; only the worker with the baton accesses the
    /// rest.
    struct Worker {
        unsigned number = 0;
        std::function<void()> block;
        std::thread thread;
        std::condition_variable baton;
        bool hasBaton = false;
        bool begun = false;
        bool parked = false;
        bool finished = false;
        std::optional<Timers::iterator> timer;
    };
};

}  // namespace lomaris::simulated
