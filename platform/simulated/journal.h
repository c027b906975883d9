#pragma once

#include "platform/simulated/scheduler.h"
#include "platform/simulated/this_process.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::simulated {

/// The list of boundary calls. Every call of a boundary operation passes `admits` first and then begins its line, which
/// stands from then on; the call adds its arguments and its answer to it.
class Journal {
public:
    Journal(Scheduler& scheduler, ThisProcess& process) : scheduler_(scheduler), process_(process) {}

    /// Whether this process still runs; the call of one that is over does nothing. The actions of the user that are due
    /// have their turn, and where they end the process, this throws `SimulatedTermination`.
    [[nodiscard]] bool admits();

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
    ThisProcess& process_;
    std::vector<std::string> lines_;
    std::multimap<std::size_t, std::function<void()>> actions_;
    Moment clockMoment_{-1};
    std::string clock_;
};

}  // namespace lomaris::simulated
