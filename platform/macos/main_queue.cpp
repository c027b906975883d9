#include "platform/macos/main_queue.h"

#include "platform/macos/shielded_call.h"

#include <dispatch/dispatch.h>

#include <list>
#include <mutex>
#include <utility>

namespace lomaris::macos {

class MainQueue::State : public std::enable_shared_from_this<State> {
public:
    void post(std::function<void()> block) {
        {
            const std::lock_guard lock(mutex_);
            if (isClosed_) {
                return;
            }
            blocks_.push_back(std::move(block));
        }
        askForATurn();
    }

    void close() {
        // Freed after the lock is released, because the captures of a block may call `post` when they are destroyed.
        std::list<std::function<void()>> dropped;
        const std::lock_guard lock(mutex_);
        isClosed_ = true;
        dropped.swap(blocks_);
    }

    void beginPause() {
        const std::lock_guard lock(mutex_);
        ++pauses_;
    }

    void endPause() {
        int turns = 0;
        {
            const std::lock_guard lock(mutex_);
            if (--pauses_ == 0) {
                turns = std::exchange(missedTurns_, 0);
            }
        }
        for (; turns > 0; --turns) {
            askForATurn();
        }
    }

private:
    /// Adds one entry to the platform's main queue; each entry runs one block.
    void askForATurn() {
        auto context = std::make_unique<std::shared_ptr<State>>(shared_from_this());
        dispatch_async_f(dispatch_get_main_queue(), context.release(), [](void* raw) {
            const std::unique_ptr<std::shared_ptr<State>> owned(static_cast<std::shared_ptr<State>*>(raw));
            (*owned)->takeTurn();
        });
    }

    void takeTurn() {
        std::list<std::function<void()>> taken;
        {
            const std::lock_guard lock(mutex_);
            if (pauses_ > 0) {
                ++missedTurns_;
                return;
            }
            if (blocks_.empty()) {
                return;
            }
            taken.splice(taken.begin(), blocks_, blocks_.begin());
        }
        runShielded(taken.front());
    }

    std::mutex mutex_;
    std::list<std::function<void()>> blocks_;
    bool isClosed_ = false;
    int pauses_ = 0;
    int missedTurns_ = 0;
};

MainQueue::Pause::Pause(const MainQueue& queue) : state_(queue.state_) { state_->beginPause(); }

MainQueue::Pause::~Pause() { state_->endPause(); }

MainQueue::MainQueue() : state_(std::make_shared<State>()) {}

void MainQueue::post(std::function<void()> block) { state_->post(std::move(block)); }

void MainQueue::close() { state_->close(); }

}  // namespace lomaris::macos
