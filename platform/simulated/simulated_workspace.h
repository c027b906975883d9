#pragma once

#include "platform/simulated/applications.h"
#include "platform/simulated/journal.h"
#include "platform/workspace.h"

namespace lomaris::simulated {

class SimulatedWorkspace final : public Workspace {
public:
    SimulatedWorkspace(Journal& journal, Applications& applications) : journal_(journal), applications_(applications) {}

    std::optional<RunningApplication> frontmostApplication() override;
    std::optional<RunningApplication> runningApplication(ProcessIdentifier processIdentifier) override;

private:
    [[nodiscard]] std::optional<RunningApplication> find(ProcessIdentifier processIdentifier);

    Journal& journal_;
    Applications& applications_;
};

}  // namespace lomaris::simulated
