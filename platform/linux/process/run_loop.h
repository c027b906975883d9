#pragma once

#include <functional>

namespace lomaris {

/// Lets services of this platform handle input on file descriptors while the main thread waits, such as requests of
/// other programs. Main thread only.
class RunLoop {
public:
    RunLoop() = default;
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;
    virtual ~RunLoop() = default;

    /// Registers `serve`, which is called inside `runLoopSlice`: when the descriptor is readable or its peer has closed
    /// it, and once before every wait, as a library may have read the input into its own buffer already. `serve` must
    /// not block or throw, and may add and remove readers, including itself. Replaces the previous reader of the
    /// descriptor.
    virtual void addReader(int descriptor, std::function<void()> serve) = 0;

    /// Removes the reader of a descriptor. No effect if there is none. Must be called before the descriptor is closed.
    virtual void removeReader(int descriptor) = 0;
};

}  // namespace lomaris
