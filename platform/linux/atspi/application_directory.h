#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_connection.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace lomaris {

/// The root object of an application. `object` is valid only if `error` is `success`.
struct ApplicationRoot {
    AXError error = AXError::success;
    ObjectReference object;
};

/// Maps process identifiers to applications on the accessibility bus, and unique bus names to processes. Caches the
/// process of a name, as the bus never reuses a unique bus name. Main thread only.
class ApplicationDirectory {
public:
    /// `bus` must outlive this object.
    explicit ApplicationDirectory(BusConnection& bus) : bus_(bus) {}

    /// Lists the applications of the registry, each time, as the system reuses process identifiers. `apiDisabled` if
    /// the process has no application there, `cannotComplete` if the registry does not reply in time. Calls
    /// `bus.finish`.
    [[nodiscard]] ApplicationRoot rootOf(ProcessIdentifier processIdentifier);

    /// The process that owns the bus name, or nullopt if none does. Calls `bus.finish` if the name is not cached.
    [[nodiscard]] std::optional<ProcessIdentifier> processOf(const std::string& name);

private:
    void askForProcessOf(const std::string& name);

    BusConnection& bus_;
    std::unordered_map<std::string, ProcessIdentifier> processes_;
};

}  // namespace lomaris
