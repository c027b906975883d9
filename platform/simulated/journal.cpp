#include "platform/simulated/journal.h"

#include "platform/simulated/describe.h"

#include <utility>

namespace lomaris::simulated {

bool Journal::admits() {
    if (!process_.isOver()) {
        scheduler_.runDueActions();
        if (!actions_.empty()) {
            runActionsBeforeNextCall();
        }
    }
    process_.passCall();
    return !process_.isOver();
}

std::size_t Journal::begin(std::string_view call) {
    updateClock();
    std::string& line = lines_.emplace_back();
    line.reserve(96);
    line += clock_;
    if (scheduler_.isActing()) {
        line += "[user] ";
    } else if (const unsigned number = scheduler_.currentNumber(); number > 0) {
        line += "[background ";
        appendInteger(line, number);
        line += "] ";
    }
    line += call;
    return lines_.size() - 1;
}

void Journal::runActionsBeforeNextCall() {
    // An action may make calls itself, so the number of the next call may change.
    for (auto next = actions_.find(lines_.size() + 1); next != actions_.end();
         next = actions_.find(lines_.size() + 1)) {
        const std::function<void()> action = std::move(next->second);
        actions_.erase(next);
        scheduler_.act(action);
    }
}

void Journal::updateClock() {
    if (clockMoment_ == scheduler_.now()) {
        return;
    }
    clockMoment_ = scheduler_.now();
    clock_.clear();
    appendSeconds(clock_, clockMoment_);
    clock_ += ' ';
}

}  // namespace lomaris::simulated
