#pragma once

#include "platform/linux/dbus/bus_connection.h"

#include <chrono>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace lomaris {

/// What all objects of one application said of themselves at one moment, by path.
class ObjectSnapshot {
public:
    /// Of `objects`, keeps those of the application with the bus name `peer` that are not defunct.
    ObjectSnapshot(const std::string& peer, std::vector<ListedObject> objects);

    /// What the object said, or null where the application did not list it. Valid as long as the snapshot.
    [[nodiscard]] const ListedObject* find(const ObjectReference& object) const;

private:
    std::string peer_;
    std::unordered_map<std::string, ListedObject> objects_;
};

/// How long a snapshot answers for its application.
inline constexpr std::chrono::milliseconds snapshotLifetime{100};

/// Takes the snapshots that a walk lives from: one question where thousands would do.
///
/// Only an application whose toolkit is known to list its objects as they are now, and without minding the work, is
/// asked, and only where the last list came a lifetime ago, so that looking at single elements in between costs no more
/// lists. A snapshot older than that is not handed out. Main thread only.
class ObjectSnapshots {
public:
    explicit ObjectSnapshots(BusConnection& bus, std::chrono::milliseconds lifetime = snapshotLifetime)
        : bus_(bus), lifetime_(lifetime) {}

    /// Takes a snapshot of the application with this bus name where none has been taken for a while. Finishes the bus's
    /// calls.
    void take(const std::string& peer);

    /// The latest snapshot of the application, or null where there is none or it is too old. Valid until `drop` or the
    /// next `take`.
    [[nodiscard]] const ObjectSnapshot* current(const std::string& peer) const;

    /// Forgets what was taken, as something else looked at an application or changed it.
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
