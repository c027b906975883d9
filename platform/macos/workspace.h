#pragma once

#include "platform/macos/run_loop.h"
#include "platform/workspace.h"

namespace lomaris::macos {

/// The applications of the user's session.
///
/// The workspace of the platform keeps what it once answered until the run loop of the main thread turns, so each
/// question first handles the news that wait. Nothing is asked before the first use. Main thread only.
class MacOSWorkspace final : public Workspace {
public:
    /// `runLoop` outlives the workspace.
    explicit MacOSWorkspace(RunLoop& runLoop) : runLoop_(runLoop) {}

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override;
    [[nodiscard]] std::optional<RunningApplication> runningApplication(ProcessIdentifier processIdentifier) override;

private:
    RunLoop& runLoop_;
};

}  // namespace lomaris::macos
