#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

namespace lomaris::test {

/// The world in which the workspace contract is watched: two applications run, the first one is in front.
class WorkspaceWorld {
public:
    virtual ~WorkspaceWorld() = default;

    virtual Platform& platform() = 0;
    /// What the platform should say of the application in front at the beginning.
    virtual RunningApplication first() = 0;
    /// What the platform should say of the other one.
    virtual RunningApplication second() = 0;
    /// A process identifier that no process has.
    virtual ProcessIdentifier missingProcess() = 0;
    /// Brings the second application to the front; returns once it is there.
    virtual void bringSecondToFront() = 0;
    /// Ends the application that was in front at the beginning; returns once it is gone.
    virtual void quitFirst() = 0;
};

using WorkspaceWorldMaker = WorldMaker<WorkspaceWorld>;

class WorkspaceContract : public ContractSuite<WorkspaceWorld> {
protected:
    Workspace& workspace() { return world().platform().workspace(); }
};

}  // namespace lomaris::test
