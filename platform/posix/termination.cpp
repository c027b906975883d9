#include "platform/posix/termination.h"

#include <algorithm>
#include <utility>

namespace lomaris {

class Termination::Guard final : public TerminationGuard {
public:
    Guard(Termination& termination, std::function<void()> cleanUp)
        : termination_(termination), cleanUp_(std::move(cleanUp)) {
        termination_.guards_.push_back(this);
    }
    ~Guard() override {
        holdsOff_ = false;
        termination_.chooseWhatSecondSignalDoes();
        termination_.endIfAsked();
        termination_.guards_.erase(std::find(termination_.guards_.begin(), termination_.guards_.end(), this));
    }

    void holdOff() override {
        termination_.endIfAsked();
        holdsOff_ = true;
        termination_.chooseWhatSecondSignalDoes();
    }

    [[nodiscard]] bool holdsOff() const { return holdsOff_; }
    void cleanUp() const { cleanUp_(); }

private:
    Termination& termination_;
    std::function<void()> cleanUp_;
    bool holdsOff_ = false;
};

std::unique_ptr<TerminationGuard> Termination::guard(std::function<void()> cleanUp) {
    if (catchesSignals_ && !signals_) {
        signals_.emplace();
        chooseWhatSecondSignalDoes();
    }
    return std::make_unique<Guard>(*this, std::move(cleanUp));
}

void Termination::endIfAsked() {
    if (!signals_ || !signals_->pending() || isHeldOff()) {
        return;
    }
    if (!guards_.empty()) {
        guards_.back()->cleanUp();
    }
    endServices_();
    signals_->endProcess();
}

void Termination::setSecondSignalEnds(bool ends) {
    secondSignalEnds_ = ends;
    chooseWhatSecondSignalDoes();
}

void Termination::chooseWhatSecondSignalDoes() {
    if (signals_) {
        signals_->setSecondSignalEnds(secondSignalEnds_ && !isHeldOff());
    }
}

bool Termination::isHeldOff() const {
    return std::any_of(guards_.begin(), guards_.end(), [](const Guard* guard) { return guard->holdsOff(); });
}

}  // namespace lomaris
