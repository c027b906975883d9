#include "platform/macos/background_blocks.h"

#include "platform/macos/monotonic_clock.h"
#include "platform/macos/shielded_call.h"
#include "platform/macos/timed_condition.h"

#include <dispatch/dispatch.h>

#include <algorithm>
#include <atomic>
#include <list>
#include <mutex>
#include <utility>
#include <vector>

namespace lomaris::macos {

/// A timed wait with its own lock. Registered with the state, so that `finish` can interrupt it.
class BackgroundBlocks::JumpingCondition final : public Condition {
public:
    explicit JumpingCondition(std::shared_ptr<State> state) : state_(std::move(state)) {}

    void lock() override { condition_.lock(); }
    void unlock() override { condition_.unlock(); }
    void waitUntil(Moment deadline) override;
    void broadcast() override { condition_.wakeAll(); }

    void wakeForTheEnd() {
        // Takes the lock: a thread that has not seen `isFinishing` is in its wait by now, and is woken.
        const std::lock_guard lock(condition_);
        condition_.wakeAll();
    }

private:
    std::shared_ptr<State> state_;
    TimedCondition condition_;
};

class BackgroundBlocks::State {
public:
    [[nodiscard]] Moment now() const { return std::max(monotonicNow(), jumpedTo_.load()); }
    [[nodiscard]] bool isFinishing() const { return isFinishing_.load(); }

    void jumpTo(Moment moment) {
        Moment reached = jumpedTo_.load();
        while (reached < moment && !jumpedTo_.compare_exchange_weak(reached, moment)) {
        }
    }

    /// Sleeps until the deadline or `finish`, whichever is first.
    void sleepUntil(Moment deadline) {
        const std::lock_guard lock(changed_);
        while (!isFinishing() && monotonicNow() < deadline) {
            changed_.waitUntil(deadline);
        }
    }

    /// Stores a block until the queue runs it. False after `finish`.
    [[nodiscard]] bool keep(std::function<void()> block) {
        const std::lock_guard lock(changed_);
        if (isFinishing()) {
            return false;
        }
        waiting_.push_back(std::move(block));
        return true;
    }

    /// Runs the oldest stored block, if there is one.
    void runNext() {
        std::list<std::function<void()>> taken;
        {
            const std::lock_guard lock(changed_);
            if (waiting_.empty()) {
                return;
            }
            taken.splice(taken.begin(), waiting_, waiting_.begin());
            ++running_;
        }
        runShielded(taken.front());
        // Frees the captures of the block before `finish` can return.
        taken.clear();
        const std::lock_guard lock(changed_);
        --running_;
        changed_.wakeAll();
    }

    void remember(const std::shared_ptr<JumpingCondition>& condition) {
        const std::lock_guard lock(changed_);
        std::erase_if(conditions_, [](const auto& known) { return known.expired(); });
        conditions_.push_back(condition);
    }

    void finish() {
        std::list<std::function<void()>> dropped;
        std::vector<std::weak_ptr<JumpingCondition>> conditions;
        {
            const std::lock_guard lock(changed_);
            isFinishing_ = true;
            changed_.wakeAll();
            dropped.swap(waiting_);
            conditions.swap(conditions_);
        }
        for (const auto& weak : conditions) {
            if (const auto condition = weak.lock()) {
                condition->wakeForTheEnd();
            }
        }
        const std::lock_guard lock(changed_);
        while (running_ > 0) {
            changed_.wait();
        }
    }

private:
    std::atomic<Moment> jumpedTo_{Moment::min()};
    std::atomic<bool> isFinishing_ = false;
    TimedCondition changed_;
    std::list<std::function<void()>> waiting_;
    int running_ = 0;
    std::vector<std::weak_ptr<JumpingCondition>> conditions_;
};

void BackgroundBlocks::JumpingCondition::waitUntil(Moment deadline) {
    if (!state_->isFinishing()) {
        condition_.waitUntil(deadline);
    }
    if (state_->isFinishing()) {
        state_->jumpTo(deadline);
    }
}

BackgroundBlocks::BackgroundBlocks() : state_(std::make_shared<State>()) {}

void BackgroundBlocks::run(std::function<void()> block) {
    if (!state_->keep(std::move(block))) {
        return;
    }
    auto context = std::make_unique<std::shared_ptr<State>>(state_);
    dispatch_async_f(dispatch_get_global_queue(QOS_CLASS_UTILITY, 0), context.release(), [](void* raw) {
        const std::unique_ptr<std::shared_ptr<State>> owned(static_cast<std::shared_ptr<State>*>(raw));
        (*owned)->runNext();
    });
}

void BackgroundBlocks::finish() { state_->finish(); }

Moment BackgroundBlocks::now() const { return state_->now(); }

void BackgroundBlocks::sleepUntil(Moment deadline) {
    state_->sleepUntil(deadline);
    if (state_->isFinishing()) {
        state_->jumpTo(deadline);
    }
}

std::shared_ptr<Condition> BackgroundBlocks::makeCondition() {
    auto condition = std::make_shared<JumpingCondition>(state_);
    state_->remember(condition);
    return condition;
}

}  // namespace lomaris::macos
