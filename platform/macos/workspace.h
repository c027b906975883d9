#pragma once

#include "platform/macos/run_loop.h"
#include "platform/workspace.h"

namespace lomaris::macos {

/// The applications of the user's session.
///
/// The platform's workspace updates its state only while the run loop of the main thread runs, so each call first
/// handles the pending notifications. Does not access the workspace before the first use. Main thread only.
class MacOSWorkspace final : public Workspace {
public:
    /// `runLoop` must outlive the workspace.
    explicit MacOSWorkspace(RunLoop& runLoop) : runLoop_(runLoop) {}

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override;
    [[nodiscard]] std::optional<RunningApplication> runningApplication(ProcessIdentifier processIdentifier) override;

private:
    RunLoop& runLoop_;
};

}  // namespace lomaris::macos
