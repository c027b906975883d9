#pragma once

#include "platform/posix/termination_signals.h"
#include "platform/scheduling.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace lomaris {

/// Defers a request to end this process until the work in progress has been cleaned up. Main thread only.
class Termination {
public:
    /// `endServices` ends the services of the platform; it is called after the clean-up of a guard.
    explicit Termination(std::function<void()> endServices) : endServices_(std::move(endServices)) {}
    Termination(const Termination&) = delete;
    Termination& operator=(const Termination&) = delete;
    ~Termination() = default;

    /// From the first guard on, signals that request the end of the process are caught. Without this call guards have
    /// no effect, because in a program that embeds the library the signals belong to that program.
    void catchSignals() { catchesSignals_ = true; }

    /// Whether a second signal ends the process immediately, without clean-up, unless a guard holds requests off. False
    /// at first. To be true only while another process does the clean-up in that case.
    void setSecondSignalEnds(bool ends);

    [[nodiscard]] std::unique_ptr<TerminationGuard> guard(std::function<void()> cleanUp);

    /// Ends the process, after clean-up, if that was requested and no guard holds it off; otherwise returns. Must be
    /// called before and after each wait.
    void endIfAsked();

    /// A descriptor that becomes readable when the end of the process is requested, to be watched during waits.
    /// Negative if there is none or a guard holds the request off.
    [[nodiscard]] int descriptor() const { return signals_ && !isHeldOff() ? signals_->descriptor() : -1; }

private:
    class Guard;

    [[nodiscard]] bool isHeldOff() const;
    void chooseWhatSecondSignalDoes();

    std::function<void()> endServices_;
    bool catchesSignals_ = false;
    bool secondSignalEnds_ = false;
    std::optional<TerminationSignals> signals_;
    /// The newest one last.
    std::vector<const Guard*> guards_;
};

}  // namespace lomaris
