#pragma once

#include "platform/simulated/scheduler.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::simulated {

/// The list of boundary calls. Every call of a boundary operation passes `begin` first, where the actions of the user
/// that are due have their turn; its line stands from then on, and the call adds its arguments and its answer to it.
class Journal {
public:
    explicit Journal(Scheduler& scheduler) : scheduler_(scheduler) {}

    /// Begins the line of a call; the result names the line.
    std::size_t begin(std::string_view call);

    /// The line of a call, to append to. Valid until the next call begins.
    [[nodiscard]] std::string& line(std::size_t call) { return lines_[call]; }

    void beforeCall(std::size_t number, std::function<void()> action) { actions_.emplace(number, std::move(action)); }

    [[nodiscard]] const std::vector<std::string>& lines() const { return lines_; }

private:
    void runActionsBeforeNextCall();
    void updateClock();

    Scheduler& scheduler_;
    std::vector<std::string> lines_;
    std::multimap<std::size_t, std::function<void()>> actions_;
    Moment clockMoment_{-1};
    std::string clock_;
};

}  // namespace lomaris::simulated
