#pragma once

#include "platform/scheduling.h"
#include "platform/simulated/meanwhile.h"
#include "platform/simulated/scheduler.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lomaris::simulated {

/// This process as the desktop sees it: whether it still runs, and how it ends when it is told to.
class ThisProcess {
public:
    explicit ThisProcess(Scheduler& scheduler) : scheduler_(scheduler) {}
    ThisProcess(const ThisProcess&) = delete;
    ThisProcess& operator=(const ThisProcess&) = delete;

    /// What the services do when they come to their end.
    void setServicesEnd(std::function<void()> servicesEnd) { servicesEnd_ = std::move(servicesEnd); }

    /// How the process ended: having put everything in order, or killed.
    enum class Ending { orderly, sudden };

    /// What happens as soon as the process is over.
    void setAfterEnd(std::function<void(Ending)> afterEnd) { afterEnd_ = std::move(afterEnd); }
    /// A second request ends the process at once, if a keeper restores the pasteboard then.
    void setHasKeeper(bool hasKeeper) { hasKeeper_ = hasKeeper; }

    /// Something tells the process to end. Only the first request counts; with a keeper, a second one that comes before
    /// the first has ended the process kills it, unless a guard holds that off.
    void tell(int signal);
    /// The process ends at once, without any clean-up. The main thread throws at its next call or wait that is not
    /// shielded.
    void kill(int signal);
    /// The process ends by itself, or as it was told to; nothing is thrown.
    void finish();
    /// Nothing is left to be done; the services are about to go.
    void leave();

    [[nodiscard]] bool isOver() const { return isOver_; }
    [[nodiscard]] std::optional<int> endedBy() const { return endedBy_; }

    [[nodiscard]] std::unique_ptr<TerminationGuard> guard(std::function<void()> cleanUp);

    /// Nothing is thrown because the process is killed as long as the result lives: for what a destructor may call, a
    /// write to the pasteboard for example.
    [[nodiscard]] Meanwhile<bool> shield() { return {isShielded_, true}; }

    /// To be passed by each call: ends the process where it was told to and there was never a guard. May throw.
    void passCall();
    /// Whether what this process writes still goes out. May throw, as a call does.
    [[nodiscard]] bool passOutput();
    /// To be passed before and during each wait of the main thread: ends the process where it was told to and no guard
    /// holds that off. May throw.
    void passWait();

    /// The main thread waits until the moment, which is ahead, or until it is woken. May throw.
    void waitUntil(Moment moment);
    /// The main thread waits for another program to answer; after a guard it waits to the end. May throw.
    void awaitAnswer(Moment moment);

private:
    class Guard;
    enum class MainThread { runs, waits, awaitsAnswer };

    [[nodiscard]] bool isHeldOff() const;
    void end();
    void becomeOver(Ending ending);
    void park(MainThread how, Moment moment);
    void throwWhatIsOwed();

    Scheduler& scheduler_;
    std::function<void()> servicesEnd_;
    std::function<void(Ending)> afterEnd_;
    /// The newest one last.
    std::vector<Guard*> guards_;
    bool wasGuarded_ = false;
    MainThread mainThread_ = MainThread::runs;
    std::optional<int> told_;
    std::optional<int> endedBy_;
    bool isEnding_ = false;
    bool isOver_ = false;
    bool hasKeeper_ = false;
    bool wasKilled_ = false;
    bool isShielded_ = false;
    bool owesThrow_ = false;
};

}  // namespace lomaris::simulated
