#include "platform/simulated/this_process.h"

#include "platform/simulated/simulated_desktop.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace lomaris::simulated {

class ThisProcess::Guard final : public TerminationGuard {
public:
    Guard(ThisProcess& process, std::function<void()> made) : cleanUp(std::move(made)), process_(process) {
        process_.guards_.push_back(this);
        process_.wasGuarded_ = true;
    }

    ~Guard() override {
        holdsOff = false;
        // A destructor cannot throw; the next call does.
        if (process_.told_ && process_.scheduler_.isMainCurrent() && !process_.isHeldOff()) {
            process_.end();
        }
        std::erase(process_.guards_, this);
    }

    void holdOff() override {
        process_.passWait();
        holdsOff = true;
    }

    std::function<void()> cleanUp;
    bool holdsOff = false;

private:
    ThisProcess& process_;
};

void ThisProcess::tell(int signal) {
    if (isOver_) {
        return;
    }
    if (isEnding_ || told_) {
        if (hasKeeper_ && wasGuarded_ && !isHeldOff()) {
            kill(signal);
        }
        return;
    }
    told_ = signal;
    const bool endsNow = wasGuarded_ ? mainThread_ == MainThread::waits && !isHeldOff()  //
                                     : mainThread_ != MainThread::runs;
    if (endsNow) {
        scheduler_.wakeMain();
    }
}

void ThisProcess::kill(int signal) {
    if (isOver_) {
        return;
    }
    told_.reset();
    endedBy_ = signal;
    wasKilled_ = true;
    owesThrow_ = true;
    becomeOver(Ending::sudden);
    if (mainThread_ != MainThread::runs) {
        scheduler_.wakeMain();
    }
}

void ThisProcess::finish() {
    // A request that arrives while the services end no longer interrupts them.
    wasGuarded_ = true;
    if (!told_ && !isOver_) {
        const auto shielded = shield();
        servicesEnd_();
    }
    if (told_) {
        end();
    }
    leave();
}

void ThisProcess::leave() {
    told_.reset();
    owesThrow_ = false;
    if (!isOver_) {
        becomeOver(Ending::orderly);
    }
}

std::unique_ptr<TerminationGuard> ThisProcess::guard(std::function<void()> cleanUp) {
    return std::make_unique<Guard>(*this, std::move(cleanUp));
}

void ThisProcess::passCall() {
    if (!scheduler_.isMainCurrent() || scheduler_.isActing()) {
        return;
    }
    if (told_ && !wasGuarded_) {
        end();
    }
    throwWhatIsOwed();
}

bool ThisProcess::passOutput() {
    passCall();
    return !told_ && !isOver_;
}

void ThisProcess::passWait() {
    if (scheduler_.isActing()) {
        return;
    }
    if (told_ && !isHeldOff()) {
        end();
    }
    throwWhatIsOwed();
}

void ThisProcess::waitUntil(Moment moment) {
    park(MainThread::waits, moment);
    passWait();
}

void ThisProcess::awaitAnswer(Moment moment) {
    park(MainThread::awaitsAnswer, moment);
    passCall();
}

void ThisProcess::park(MainThread how, Moment moment) {
    mainThread_ = how;
    scheduler_.park(moment);
    mainThread_ = MainThread::runs;
}

bool ThisProcess::isHeldOff() const {
    return std::any_of(guards_.begin(), guards_.end(), [](const Guard* guard) { return guard->holdsOff; });
}

void ThisProcess::end() {
    const int signal = *told_;
    told_.reset();
    isEnding_ = true;
    const auto shielded = shield();
    if (!guards_.empty()) {
        const std::function<void()> cleanUp = std::move(guards_.back()->cleanUp);
        if (cleanUp) {
            cleanUp();
        }
    }
    if (!isOver_) {
        servicesEnd_();
    }
    isEnding_ = false;
    if (!isOver_) {
        endedBy_ = signal;
        owesThrow_ = true;
        becomeOver(Ending::orderly);
    }
}

void ThisProcess::becomeOver(Ending ending) {
    isOver_ = true;
    afterEnd_(ending);
}

void ThisProcess::throwWhatIsOwed() {
    // If another exception is in flight, a destructor may have made this call.
    if (!owesThrow_ || std::uncaught_exceptions() > 0) {
        return;
    }
    if (wasKilled_ && isShielded_) {
        return;
    }
    owesThrow_ = false;
    throw SimulatedTermination{endedBy_.value_or(0)};
}

}  // namespace lomaris::simulated
