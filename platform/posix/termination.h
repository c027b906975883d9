#pragma once

#include "platform/posix/termination_signals.h"
#include "platform/scheduling.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace lomaris {

/// Puts a request to end this process off until what is under way has been put in order. Main thread.
class Termination {
public:
    /// `endServices` brings the services of the platform to their end, after the clean-up of a guard.
    explicit Termination(std::function<void()> endServices) : endServices_(std::move(endServices)) {}
    Termination(const Termination&) = delete;
    Termination& operator=(const Termination&) = delete;
    ~Termination() = default;

    /// From the first guard on, signals that ask the process to end are caught. Without this, guards are inert: in a
    /// program that embeds the library, signals are that program's own.
    void catchSignals() { catchesSignals_ = true; }

    /// From now on a second signal ends the process immediately, without clean-up, unless a guard holds requests off:
    /// to be called when another process does the clean-up in that case.
    void letSecondSignalEnd();

    [[nodiscard]] std::unique_ptr<TerminationGuard> guard(std::function<void()> cleanUp);

    /// Ends the process, in order, where it was asked to end and no guard holds that off; else returns. Waits call it
    /// before and after.
    void endIfAsked();

    /// A file that has something to read once the process is asked to end, for waits to watch; negative where none is,
    /// or where a guard holds the request off.
    [[nodiscard]] int descriptor() const { return signals_ && !isHeldOff() ? signals_->descriptor() : -1; }

private:
    class Guard;

    [[nodiscard]] bool isHeldOff() const;
    void chooseWhatSecondSignalDoes();

    std::function<void()> endServices_;
    bool catchesSignals_ = false;
    bool secondSignalEnds_ = false;
    std::optional<TerminationSignals> signals_;
    /// Newest last.
    std::vector<const Guard*> guards_;
};

}  // namespace lomaris
