#pragma once

#include "platform/simulated/simulated_desktop.h"

#include <chrono>

namespace lomaris::test {

/// Runs the run loop of the main thread for a time, as a host does.
inline void turnFor(SimulatedDesktop& desktop, Duration duration) {
    const Moment end = desktop.now() + duration;
    while (desktop.now() < end) {
        desktop.scheduling().runLoopSlice(std::chrono::milliseconds(10));
    }
}

}  // namespace lomaris::test
