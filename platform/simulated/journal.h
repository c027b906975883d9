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

/// The list of boundary calls. Every boundary operation first calls `admits` and then begins its line, which stays in
/// the journal even if the call never returns. The operation appends its arguments and its result to the line.
class Journal {
public:
    Journal(Scheduler& scheduler, ThisProcess& process) : scheduler_(scheduler), process_(process) {}

    /// Runs the actions of the user that are due, and returns whether this process still runs; if not, the call must do
    /// nothing. Throws `SimulatedTermination` if the process ends here.
    [[nodiscard]] bool admits();

    /// Begins the line of a call and returns its index.
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
