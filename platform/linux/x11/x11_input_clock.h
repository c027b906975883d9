#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>

namespace lomaris {

/// When the X server last saw any input of the user: keys, buttons or motion of the pointer.
class X11InputClock {
public:
    /// `connection` outlives the clock.
    explicit X11InputClock(X11Connection& connection) : connection_(connection) {}

    /// The low 32 bits of the server's own time, in milliseconds, at the last input; nothing where the server is not
    /// there or does not tell. The same moment always comes back as the same number. Main thread.
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
