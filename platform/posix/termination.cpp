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
        termination_.endIfAsked();
        termination_.guards_.erase(std::find(termination_.guards_.begin(), termination_.guards_.end(), this));
    }

    void cleanUp() const { cleanUp_(); }

private:
    Termination& termination_;
    std::function<void()> cleanUp_;
};

std::unique_ptr<TerminationGuard> Termination::guard(std::function<void()> cleanUp) {
    if (catchesSignals_ && !signals_) {
        signals_.emplace();
    }
    return std::make_unique<Guard>(*this, std::move(cleanUp));
}

void Termination::endIfAsked() {
    if (!signals_ || !signals_->pending()) {
        return;
    }
    if (!guards_.empty()) {
        guards_.back()->cleanUp();
    }
    endServices_();
    signals_->endProcess();
}

}  // namespace lomaris
