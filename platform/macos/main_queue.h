#pragma once

#include <functional>
#include <memory>

namespace lomaris::macos {

/// Queues blocks for the platform's main queue, which any run loop of the main thread serves, including that of a
/// program that embeds the library. The blocks are stored here until they run, so that they can be deferred and
/// dropped.
class MainQueue {
    class State;

public:
    /// While a `Pause` exists, no block runs even if the run loop runs. Blocks that were due in the meantime run
    /// afterwards, in their order. Main thread only.
    class Pause {
    public:
        explicit Pause(const MainQueue& queue);
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
        ~Pause();

    private:
        std::shared_ptr<State> state_;
    };

    MainQueue();
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    ~MainQueue() { close(); }

    /// Queues `block`; dropped after `close`. Any thread.
    void post(std::function<void()> block);

    /// Drops all queued and later blocks. Main thread only.
    void close();

private:
    // Shared with the entries of the platform's queue, which may outlive this object.
    std::shared_ptr<State> state_;
};

}  // namespace lomaris::macos
