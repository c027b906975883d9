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

/// Says why on standard error and aborts: the scenario itself is wrong and no answer would be.
[[noreturn]] void abortScenario(const char* reason);

/// Virtual time and the baton.
///
/// Threads of the scenario are workers. Exactly one worker has the baton and runs; all state of the simulated desktop
/// belongs to whoever has it, which is why none of it is locked. A worker that waits picks its successor: the first of
/// those that are ready, and when nobody is, the clock jumps to the next moment at which something happens. Only the
/// hand-over itself is guarded by a lock.
class Scheduler {
public:
    struct Worker;

    Scheduler();
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;
    ~Scheduler();

    [[nodiscard]] Moment now() const { return now_; }
    /// The moment after a duration from now; the last moment of all where there is none.
    [[nodiscard]] Moment momentAfter(Duration duration) const {
        return duration > Moment::max() - now_ ? Moment::max() : now_ + duration;
    }

    /// The worker that has the baton.
    [[nodiscard]] Worker& current() { return *current_; }
    [[nodiscard]] bool isMainCurrent() const { return current_ == main_; }
    /// Number of the background block that has the baton, 0 for the main thread.
    [[nodiscard]] unsigned currentNumber() const;

    /// An action of the user at a moment; past ones run at the next occasion.
    void at(Moment moment, std::function<void()> action);
    /// Runs the actions whose moment has come.
    void runDueActions() {
        if (!timers_.empty()) {
            runDueTimersOfActions();
        }
    }
    /// Runs something that may not wait, as an action of the user or of another program.
    void act(const std::function<void()>& action);
    /// The same after a delay, at once where there is none.
    void actAfter(Duration delay, const std::function<void()>& action);
    [[nodiscard]] bool isActing() const { return acting_ > 0; }

    /// The current worker waits until it is woken or the deadline is there, which must be ahead.
    void park(std::optional<Moment> deadline);
    /// Makes a worker that waits ready; nothing happens to one that does not wait.
    void wake(Worker& worker);
    void wakeMain() { wake(*main_); }

    /// A new background block; it begins when the others wait. Answers its number, from 1.
    unsigned spawn(std::function<void()> block);

    /// Drops actions and blocks that have not begun, then lets the others come to their end. Called on the main thread,
    /// which goes on alone. Blocks that are spawned later never begin.
    void finish();
    /// The same without dropping the actions.
    void finishBlocks();
    /// Runs all actions that are still to come, time jumping from one to the next. Nobody else may be waiting.
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
    /// One thread of the scenario. `hasBaton` is guarded by the hand-over lock, the rest by the baton.
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
