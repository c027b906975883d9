#pragma once

#include <functional>

namespace lomaris {

/// Where services of this platform hang what they must serve while the tool waits: requests of other programs that
/// arrive on a file descriptor. Main thread only.
class RunLoop {
public:
    RunLoop() = default;
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;
    virtual ~RunLoop() = default;

    /// Has `serve` called during run-loop slices: once before every wait, as a library may have read from the
    /// descriptor before and keep what came in its own memory, and whenever the descriptor has input or lost its other
    /// end. `serve` handles what is there without waiting, does not throw, and may add and remove readers, itself
    /// included. A descriptor has one reader; a second one replaces it.
    virtual void addReader(int descriptor, std::function<void()> serve) = 0;

    /// Stops serving a descriptor; harmless where nobody does. To be called before the descriptor is closed.
    virtual void removeReader(int descriptor) = 0;
};

}  // namespace lomaris
