#pragma once

#include "platform/scheduling.h"
#include "platform/simulated/meanwhile.h"
#include "platform/simulated/scheduler.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lomaris::simulated {

/// This process in the simulation: whether it still runs, and how it ends when its end is requested.
class ThisProcess {
public:
    explicit ThisProcess(Scheduler& scheduler) : scheduler_(scheduler) {}
    ThisProcess(const ThisProcess&) = delete;
    ThisProcess& operator=(const ThisProcess&) = delete;

    /// Sets the function that ends the services.
    void setServicesEnd(std::function<void()> servicesEnd) { servicesEnd_ = std::move(servicesEnd); }

    /// How the process ended: after its clean-up, or killed.
    enum class Ending { orderly, sudden };

    /// Sets the function that is called as soon as the process has ended.
    void setAfterEnd(std::function<void(Ending)> afterEnd) { afterEnd_ = std::move(afterEnd); }
    /// Sets whether a keeper restores the pasteboard; if so, a second request kills the process.
    void setHasKeeper(bool hasKeeper) { hasKeeper_ = hasKeeper; }

    /// Requests the end of the process. Only the first request counts; if there is a keeper and a guard was created, a
    /// second one before the end kills the process, unless a guard holds termination off.
    void tell(int signal);
    /// Ends the process at once, without any clean-up. The main thread throws in its next call or wait that is not
    /// shielded.
    void kill(int signal);
    /// Ends the process normally, or as requested; throws nothing.
    void finish();
    /// Marks the process as ended without ending the services, which are about to be destroyed.
    void leave();

    [[nodiscard]] bool isOver() const { return isOver_; }
    [[nodiscard]] std::optional<int> endedBy() const { return endedBy_; }

    [[nodiscard]] std::unique_ptr<TerminationGuard> guard(std::function<void()> cleanUp);

    /// While the result exists, a kill causes no exception. For functions that destructors call, such as writing to the
    /// pasteboard.
    [[nodiscard]] Meanwhile<bool> shield() { return {isShielded_, true}; }

    /// Must be called by each boundary call: ends the process if that was requested and no guard was ever created. May
    /// throw.
    void passCall();
    /// Returns whether output of this process is still written. May throw, like a call.
    [[nodiscard]] bool passOutput();
    /// Must be called before and during each wait of the main thread: ends the process if that was requested and no
    /// guard holds termination off. May throw.
    void passWait();

    /// Suspends the main thread until `moment`, which is in the future, or until it is woken. May throw.
    void waitUntil(Moment moment);
    /// Suspends the main thread while another program works on its reply. Once a guard was created, a request to end
    /// the process does not interrupt it. May throw.
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
