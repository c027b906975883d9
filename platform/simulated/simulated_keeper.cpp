#include "platform/simulated/simulated_keeper.h"

namespace lomaris::simulated {

void SimulatedKeeper::begin() {
    hasBegun_ = true;
    take(keeping::event::Began());
}

void SimulatedKeeper::protect(const Contents& saved) {
    saved_ = saved;
    take(keeping::event::Protected());
}

void SimulatedKeeper::expectCopy(std::optional<ProcessIdentifier> target, Duration wait) {
    target_ = target;
    take(keeping::event::CopyExpected{wait});
}

void SimulatedKeeper::noteCopy(std::optional<ProcessIdentifier> copier) {
    const bool isTarget = copier && copier == target_;
    take(keeping::event::OwnerChanged{isTarget ? keeping::Owner::target : keeping::Owner::other});
}

bool SimulatedKeeper::holds() {
    // The timer for the current moment may not have run yet.
    take(keeping::event::TimePassed());
    return state_.holds;
}

void SimulatedKeeper::take(const keeping::Event& event) {
    if (!hasBegun_ || isDone_) {
        return;
    }
    const keeping::Decision decision = keeping::decide(state_, event, scheduler_.now());
    state_ = decision.state;
    isDone_ = decision.isDone;
    if (decision.restores) {
        restore_(saved_);
    }
    if (decision.wakeAt && decision.wakeAt != wakeAt_) {
        wakeAt_ = decision.wakeAt;
        scheduler_.at(*decision.wakeAt, [this] { take(keeping::event::TimePassed()); });
    }
}

}  // namespace lomaris::simulated
