#pragma once

#include "platform/linux/dbus/bus_connection.h"

#include <chrono>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace lomaris {

/// The data of all objects of one application at one moment, from one reply of `Cache.GetItems`.
class ObjectSnapshot {
public:
    /// Keeps the objects whose bus name is `peer` and that are not defunct.
    ObjectSnapshot(const std::string& peer, std::vector<ListedObject> objects);

    /// The data of the object. Null if the application did not list it. Valid as long as the snapshot.
    [[nodiscard]] const ListedObject* find(const ObjectReference& object) const;

private:
    std::string peer_;
    std::unordered_map<std::string, ListedObject> objects_;
};

/// How long a snapshot is used.
inline constexpr std::chrono::milliseconds snapshotLifetime{100};

/// Takes snapshots of applications: one request instead of thousands in a walk over their elements.
///
/// Takes them only of applications whose toolkit (GTK) is known to return an up-to-date list at little cost, and at
/// most one per application and lifetime, also if the last one was dropped. Main thread only.
class ObjectSnapshots {
public:
    /// `bus` must outlive this object.
    explicit ObjectSnapshots(BusConnection& bus, std::chrono::milliseconds lifetime = snapshotLifetime)
        : bus_(bus), lifetime_(lifetime) {}

    /// Takes a snapshot of the application with this bus name unless the last one was taken less than a lifetime ago.
    /// Calls `bus.finish`.
    void take(const std::string& peer);

    /// The latest snapshot of the application. Null if there is none or it is older than a lifetime. Valid until the
    /// next call of `drop` or `take`.
    [[nodiscard]] const ObjectSnapshot* current(const std::string& peer) const;

    /// Drops all snapshots, because an operation on a single element may have changed an application.
    void drop();

private:
    using Clock = std::chrono::steady_clock;

    struct Application {
        bool listsItsObjects = false;
        std::optional<Clock::time_point> answered;
        std::optional<ObjectSnapshot> snapshot;
    };

    [[nodiscard]] bool listsItsObjects(const std::string& peer);
    [[nodiscard]] std::optional<ObjectSnapshot> askForObjects(const std::string& peer);

    BusConnection& bus_;
    std::chrono::milliseconds lifetime_;
    std::unordered_map<std::string, Application> applications_;
};

}  // namespace lomaris
