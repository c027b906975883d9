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

/// Where what an object says of itself comes from: a snapshot that holds it, else the object. A cheap value; the
/// connection and the snapshot must outlive its use.
class ObjectSource {
public:
    /// What was asked for, or nothing; `reply` says why, and nothing else.
    template <typename Value>
    using Take = std::function<void(const std::optional<Value>& value, const BusReply& reply)>;

    /// Without a snapshot every object is asked.
    explicit ObjectSource(BusConnection& bus, const ObjectSnapshot* snapshot = nullptr)
        : bus_(&bus), snapshot_(snapshot) {}

    [[nodiscard]] BusConnection& bus() const { return *bus_; }

    // Each hands the answer over at once or inside the bus's `finish`.

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
