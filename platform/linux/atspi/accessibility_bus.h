#pragma once

#include "platform/linux/dbus/bus_connection.h"

#include <memory>
#include <optional>
#include <string>

namespace lomaris {

/// The state of the accessibility setting of the desktop, `org.a11y.Status.IsEnabled`. Applications expose their
/// objects only if it is enabled.
enum class AccessibilityStatus { unavailable, disabled, enabled };

/// The connections to the session bus, whose service `org.a11y.Bus` has the address of the accessibility bus and the
/// accessibility setting, and to the accessibility bus. Each is opened at its first use and kept; one that failed is
/// not tried again in the same run. Every call may block for up to `busCallDeadline` per request. Main thread only.
class AccessibilityBus {
public:
    /// Reads the setting, without a cache. `unavailable` if there is no display, session bus or accessibility bus.
    [[nodiscard]] AccessibilityStatus status();

    /// Sets `IsEnabled` to true. Does not check whether that succeeded.
    void enable();

    /// The connection to the accessibility bus. Null if there is none. Owned by this object.
    [[nodiscard]] BusConnection* connection();

private:
    [[nodiscard]] BusConnection* session();

    std::optional<std::unique_ptr<BusConnection>> session_;
    std::optional<std::unique_ptr<BusConnection>> accessibility_;
};

/// The D-Bus address list of the session bus: `DBUS_SESSION_BUS_ADDRESS` if it is set, otherwise the socket `bus` in
/// `XDG_RUNTIME_DIR`, otherwise an empty string.
[[nodiscard]] std::string sessionBusAddresses();

}  // namespace lomaris
