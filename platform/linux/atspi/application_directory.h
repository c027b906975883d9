#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_connection.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace lomaris {

/// The root object of an application, or why there is none.
struct ApplicationRoot {
    AXError error = AXError::success;
    ObjectReference object;
};

/// Which process stands behind which name on the accessibility bus. A name is never given out twice, so what was learnt
/// about one stays true. Main thread only.
class ApplicationDirectory {
public:
    explicit ApplicationDirectory(BusConnection& bus) : bus_(bus) {}

    /// Looks afresh each time, as process identifiers are given out again. `apiDisabled` for a process that shows
    /// nothing on the bus.
    [[nodiscard]] ApplicationRoot rootOf(ProcessIdentifier processIdentifier);

    /// The process that owns the bus name, or nothing where nobody does.
    [[nodiscard]] std::optional<ProcessIdentifier> processOf(const std::string& name);

private:
    void askForProcessOf(const std::string& name);

    BusConnection& bus_;
    std::unordered_map<std::string, ProcessIdentifier> processes_;
};

}  // namespace lomaris
