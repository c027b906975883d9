#pragma once

#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/object_snapshot.h"
#include "platform/linux/dbus/bus_connection.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lomaris {

/// Reads the basic data of objects: from a snapshot if it lists the object, otherwise with a request to the object. A
/// value that is cheap to copy; the connection and the snapshot must outlive all copies and pending calls. Main thread.
class ObjectSource {
public:
    /// Called with the value. If `value` is nullopt, `reply` has the reason; otherwise `reply` has no data.
    template <typename Value>
    using Take = std::function<void(const std::optional<Value>& value, const BusReply& reply)>;

    /// If `snapshot` is null, all data is requested from the objects.
    explicit ObjectSource(BusConnection& bus, const ObjectSnapshot* snapshot = nullptr)
        : bus_(&bus), snapshot_(snapshot) {}

    [[nodiscard]] BusConnection& bus() const { return *bus_; }

    // Each calls `take` once: immediately with the data of the snapshot, or inside the bus's `finish`.

    void askRole(const ObjectReference& object, const Take<std::uint32_t>& take) const;
    void askStates(const ObjectReference& object, const Take<atspi::States>& take) const;
    void askInterfaces(const ObjectReference& object, const Take<std::vector<std::string>>& take) const;
    void askChildCount(const ObjectReference& object, const Take<std::int32_t>& take) const;
    void askParent(const ObjectReference& object, const Take<ObjectReference>& take) const;

private:
    [[nodiscard]] const ListedObject* listed(const ObjectReference& object) const;

    BusConnection* bus_;
    const ObjectSnapshot* snapshot_;
};

}  // namespace lomaris
