#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>

namespace lomaris {

/// Determines when the X server last received input (keys, buttons or pointer motion), from the system counters of the
/// SYNC extension.
class X11InputClock {
public:
    /// `connection` must outlive the clock.
    explicit X11InputClock(X11Connection& connection) : connection_(connection) {}

    /// The server time of the last input: the low 32 bits, in milliseconds. nullopt if there is no server or it lacks
    /// the counters SERVERTIME and IDLETIME. Returns the same number until there is new input. Main thread.
    [[nodiscard]] std::optional<std::uint32_t> timeOfLastInput();

private:
    struct Counters {
        xcb_sync_counter_t serverTime = 0;
        xcb_sync_counter_t idleTime = 0;
    };

    [[nodiscard]] std::optional<Counters> findCounters();
    [[nodiscard]] bool prepareSync();

    X11Connection& connection_;
    bool areCountersSought_ = false;
    std::optional<Counters> counters_;
};

}  // namespace lomaris
