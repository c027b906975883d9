#include "platform/simulated/this_process.h"

#include "platform/simulated/simulated_desktop.h"

#include <exception>
#include <utility>

namespace lomaris::simulated {

class ThisProcess::Guard final : public TerminationGuard {
public:
    Guard(ThisProcess& process, std::function<void()> made) : cleanUp(std::move(made)), process_(process) {
        process_.guards_.push_back(this);
    }

    ~Guard() override {
        // A destructor cannot throw; the next call does.
        if (process_.told_ && process_.scheduler_.isMainCurrent()) {
            process_.end();
        }
        std::erase(process_.guards_, this);
    }

    std::function<void()> cleanUp;

private:
    ThisProcess& process_;
};

void ThisProcess::tell(int signal) {
    if (isOver_ || isEnding_ || told_) {
        return;
    }
    told_ = signal;
    const bool endsNow = guards_.empty() ? mainThread_ != MainThread::runs : mainThread_ == MainThread::waits;
    if (endsNow) {
        scheduler_.wakeMain();
    }
}

void ThisProcess::finish() {
    if (told_) {
        end();
    } else if (!isOver_) {
        servicesEnd_();
    }
    leave();
}

void ThisProcess::leave() {
    told_.reset();
    owesThrow_ = false;
    isOver_ = true;
}

std::unique_ptr<TerminationGuard> ThisProcess::guard(std::function<void()> cleanUp) {
    return std::make_unique<Guard>(*this, std::move(cleanUp));
}

void ThisProcess::passCall() {
    if (!scheduler_.isMainCurrent() || scheduler_.isActing()) {
        return;
    }
    if (told_ && guards_.empty()) {
        end();
    }
    throwWhatIsOwed();
}

void ThisProcess::passWait() {
    if (scheduler_.isActing()) {
        return;
    }
    if (told_) {
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

void ThisProcess::end() {
    const int signal = *told_;
    told_.reset();
    isEnding_ = true;
    if (!guards_.empty()) {
        const std::function<void()> cleanUp = std::move(guards_.back()->cleanUp);
        if (cleanUp) {
            cleanUp();
        }
    }
    servicesEnd_();
    isEnding_ = false;
    endedBy_ = signal;
    isOver_ = true;
    owesThrow_ = true;
}

void ThisProcess::throwWhatIsOwed() {
    // Another exception on its way means that this may be the call of a destructor.
    if (!owesThrow_ || std::uncaught_exceptions() > 0) {
        return;
    }
    owesThrow_ = false;
    throw SimulatedTermination{endedBy_.value_or(0)};
}

}  // namespace lomaris::simulated
