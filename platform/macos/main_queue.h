#pragma once

#include <functional>
#include <memory>

namespace lomaris::macos {

/// Blocks for the main thread, which the platform's main queue runs: a turning run loop does, the one of a program that
/// embeds this library as well. The blocks stay here until their turn comes, so that they can be put off and dropped.
class MainQueue {
    class State;

public:
    /// While one lives, no block runs, although the run loop may turn: those whose turn comes meanwhile run later, in
    /// their order. Main thread.
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

    /// Drops what waits and whatever still comes. Main thread.
    void close();

private:
    // Shared with what the platform's queue holds, which may outlive this object.
    std::shared_ptr<State> state_;
};

}  // namespace lomaris::macos
