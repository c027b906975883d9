#include "platform/simulated/simulated_workspace.h"

#include "platform/simulated/describe.h"

#include <cstddef>

namespace lomaris::simulated {

std::optional<RunningApplication> SimulatedWorkspace::frontmostApplication() {
    if (!journal_.admits()) {
        return std::nullopt;
    }
    const std::size_t call = journal_.begin("frontmostApplication() -> ");
    latency_.pass("frontmostApplication");
    const std::optional<ProcessIdentifier> front = applications_.front();
    std::optional<RunningApplication> answer = front ? find(*front) : std::nullopt;
    appendApplication(journal_.line(call), answer);
    return answer;
}

std::optional<RunningApplication> SimulatedWorkspace::runningApplication(ProcessIdentifier processIdentifier) {
    if (!journal_.admits()) {
        return std::nullopt;
    }
    const std::size_t call = journal_.begin("runningApplication(");
    appendInteger(journal_.line(call), processIdentifier);
    latency_.pass("runningApplication");
    journal_.line(call) += ") -> ";
    std::optional<RunningApplication> answer = find(processIdentifier);
    appendApplication(journal_.line(call), answer);
    return answer;
}

std::optional<RunningApplication> SimulatedWorkspace::find(ProcessIdentifier processIdentifier) {
    const ProcessState* process = applications_.find(processIdentifier);
    return process == nullptr ? std::nullopt : std::optional(process->application);
}

}  // namespace lomaris::simulated
