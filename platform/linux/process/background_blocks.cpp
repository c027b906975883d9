#include "platform/linux/process/background_blocks.h"

#include "platform/linux/process/monotonic_clock.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace lomaris {

namespace {

/// The nice value of a block: below interactive work, above idle work.
constexpr int utilityPriority = 10;

std::chrono::steady_clock::time_point steadyTime(Moment moment) {
    return std::chrono::steady_clock::time_point(std::max(moment, Moment::zero()));
}

void lowerPriorityOfThread() {
    // If this fails, the block runs at normal priority.
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), utilityPriority);
}

}  // namespace

/// A condition with its own mutex. Registered with the state, so that `finish` can interrupt a wait.
class BackgroundBlocks::JumpingCondition final : public Condition {
public:
    explicit JumpingCondition(std::shared_ptr<State> state) : state_(std::move(state)) {}

    void lock() override { mutex_.lock(); }
    void unlock() override { mutex_.unlock(); }
    void waitUntil(Moment deadline) override;
    void broadcast() override { changed_.notify_all(); }

    void wakeForTheEnd() {
        // The lock prevents a lost wake-up: a thread that read `isFinishing` as false is in its wait by now.
        const std::lock_guard lock(mutex_);
        changed_.notify_all();
    }

private:
    std::shared_ptr<State> state_;
    std::mutex mutex_;
    std::condition_variable changed_;
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
        std::unique_lock lock(mutex_);
        changed_.wait_until(lock, steadyTime(deadline), [&] { return isFinishing(); });
    }

    /// Counts a block as running. Returns false after `finish`.
    [[nodiscard]] bool begin() {
        const std::lock_guard lock(mutex_);
        if (isFinishing()) {
            return false;
        }
        ++running_;
        return true;
    }

    void end() {
        const std::lock_guard lock(mutex_);
        --running_;
        changed_.notify_all();
    }

    void remember(const std::shared_ptr<JumpingCondition>& condition) {
        const std::lock_guard lock(mutex_);
        std::erase_if(conditions_, [](const auto& known) { return known.expired(); });
        conditions_.push_back(condition);
    }

    void finish() {
        std::vector<std::weak_ptr<JumpingCondition>> conditions;
        {
            const std::lock_guard lock(mutex_);
            isFinishing_ = true;
            changed_.notify_all();
            conditions.swap(conditions_);
        }
        for (const auto& weak : conditions) {
            if (const auto condition = weak.lock()) {
                condition->wakeForTheEnd();
            }
        }
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return running_ == 0; });
    }

private:
    std::atomic<Moment> jumpedTo_{Moment::min()};
    std::atomic<bool> isFinishing_ = false;
    std::mutex mutex_;
    std::condition_variable changed_;
    int running_ = 0;
    std::vector<std::weak_ptr<JumpingCondition>> conditions_;
};

void BackgroundBlocks::JumpingCondition::waitUntil(Moment deadline) {
    if (!state_->isFinishing()) {
        std::unique_lock lock(mutex_, std::adopt_lock);
        changed_.wait_until(lock, steadyTime(deadline));
        lock.release();
    }
    if (state_->isFinishing()) {
        state_->jumpTo(deadline);
    }
}

BackgroundBlocks::BackgroundBlocks() : state_(std::make_shared<State>()) {}

void BackgroundBlocks::run(std::function<void()> block) {
    if (!state_->begin()) {
        return;
    }
    const auto runBlock = [state = state_](std::function<void()>& owned) {
        lowerPriorityOfThread();
        owned();
        // Release what the block owns before `finish` can return.
        owned = nullptr;
        state->end();
    };
    try {
        std::thread([runBlock, owned = std::move(block)]() mutable { runBlock(owned); }).detach();
    } catch (const std::system_error&) {
        state_->end();
    }
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

}  // namespace lomaris
