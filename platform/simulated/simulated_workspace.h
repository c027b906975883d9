#pragma once

#include "platform/simulated/applications.h"
#include "platform/simulated/call_latency.h"
#include "platform/simulated/journal.h"
#include "platform/workspace.h"

namespace lomaris::simulated {

/// The workspace service of the simulated desktop.
class SimulatedWorkspace final : public Workspace {
public:
    SimulatedWorkspace(Journal& journal, CallLatency& latency, Applications& applications)
        : journal_(journal), latency_(latency), applications_(applications) {}

    std::optional<RunningApplication> frontmostApplication() override;
    std::optional<RunningApplication> runningApplication(ProcessIdentifier processIdentifier) override;

private:
    [[nodiscard]] std::optional<RunningApplication> find(ProcessIdentifier processIdentifier);

    Journal& journal_;
    CallLatency& latency_;
    Applications& applications_;
};

}  // namespace lomaris::simulated
