#pragma once

#include "platform/scheduling.h"

namespace lomaris::macos {

/// The run loop of the main thread, for the services of this platform. Main thread only.
class RunLoop {
public:
    RunLoop() = default;
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;
    virtual ~RunLoop() = default;

    /// Handles what is already pending for this process, and what arrives within `patience`, which may be zero:
    /// requests for promised data, and notifications about other applications, without which the workspace's state is
    /// stale. Does not run blocks of the main queue.
    virtual void serveWaiting(Duration patience) = 0;
};

}  // namespace lomaris::macos
