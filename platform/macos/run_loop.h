#pragma once

#include "platform/scheduling.h"

namespace lomaris::macos {

/// The run loop of the main thread, as the services of this platform need it between two slices. Main thread.
class RunLoop {
public:
    RunLoop() = default;
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;
    virtual ~RunLoop() = default;

    /// Handles what waits for this process already, and what comes within `patience`, which may be zero: requests for
    /// promised data, and news of other applications, which the workspace takes note of only so. Blocks of the main
    /// queue stay where they are.
    virtual void serveWaiting(Duration patience) = 0;
};

}  // namespace lomaris::macos
