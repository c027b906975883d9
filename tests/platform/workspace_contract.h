#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

namespace lomaris::test {

/// The world of the workspace contract: two applications run, and the first one is frontmost.
class WorkspaceWorld {
public:
    virtual ~WorkspaceWorld() = default;

    virtual Platform& platform() = 0;
    /// The expected description of the application that is frontmost at the beginning.
    virtual RunningApplication first() = 0;
    /// The expected description of the other application.
    virtual RunningApplication second() = 0;
    /// A process identifier that no process has.
    virtual ProcessIdentifier missingProcess() = 0;
    /// Brings the second application to the front; returns once it is frontmost.
    virtual void bringSecondToFront() = 0;
    /// Ends the application that was frontmost at the beginning; returns once it has ended.
    virtual void quitFirst() = 0;
};

using WorkspaceWorldMaker = WorldMaker<WorkspaceWorld>;

/// What every platform must guarantee for `Workspace`.
class WorkspaceContract : public ContractSuite<WorkspaceWorld> {
protected:
    Workspace& workspace() { return world().platform().workspace(); }
};

}  // namespace lomaris::test
