#pragma once

#include "platform/linux/dbus/bus_connection.h"

#include <memory>
#include <optional>
#include <string>

namespace lomaris {

/// Whether the desktop's switch for accessibility is on; applications show their elements only then.
enum class AccessibilityStatus { unavailable, disabled, enabled };

/// The way to the accessibility bus: the session bus knows its address and the switch. Both connections are made at the
/// first use and kept; one that failed is not tried again in the same run. Main thread only.
class AccessibilityBus {
public:
    /// Asks afresh each time. `unavailable` where there is no display, no session bus, or no accessibility bus.
    [[nodiscard]] AccessibilityStatus status();

    /// Turns the switch on, without looking whether that worked.
    void enable();

    /// The connection to the accessibility bus, or null where there is none.
    [[nodiscard]] BusConnection* connection();

private:
    [[nodiscard]] BusConnection* session();

    std::optional<std::unique_ptr<BusConnection>> session_;
    std::optional<std::unique_ptr<BusConnection>> accessibility_;
};

/// The addresses of the session bus as the D-Bus library finds them: the variable for it, else the socket in the
/// run-time directory, else an empty string.
[[nodiscard]] std::string sessionBusAddresses();

}  // namespace lomaris
