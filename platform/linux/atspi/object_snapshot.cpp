#include "platform/linux/atspi/object_snapshot.h"

#include "platform/linux/atspi/atspi.h"

#include <string_view>
#include <utility>

namespace lomaris {

namespace {

/// Applications on GTK list their widgets, a few hundred. Other toolkits list nothing, or a whole document.
constexpr std::string_view toolkitThatListsItsObjects = "gtk";

}  // namespace

ObjectSnapshot::ObjectSnapshot(const std::string& peer, std::vector<ListedObject> objects) : peer_(peer) {
    objects_.reserve(objects.size());
    for (ListedObject& object : objects) {
        if (object.object.name == peer && !atspi::States(object.states).has(atspi::State::defunct)) {
            std::string path = object.object.path;
            objects_.emplace(std::move(path), std::move(object));
        }
    }
}

const ListedObject* ObjectSnapshot::find(const ObjectReference& object) const {
    const auto found = objects_.find(object.path);
    return found == objects_.end() || object.name != peer_ ? nullptr : &found->second;
}

void ObjectSnapshots::take(const std::string& peer) {
    const auto [place, isNew] = applications_.try_emplace(peer);
    Application& application = place->second;
    if (isNew) {
        application.listsItsObjects = listsItsObjects(peer);
    }
    const bool isDue = !application.answered || Clock::now() - *application.answered >= lifetime_;
    if (application.listsItsObjects && isDue) {
        application.snapshot = askForObjects(peer);
        application.answered = Clock::now();
        application.listsItsObjects = application.snapshot.has_value();
    }
}

const ObjectSnapshot* ObjectSnapshots::current(const std::string& peer) const {
    const auto found = applications_.find(peer);
    if (found == applications_.end() || !found->second.snapshot) {
        return nullptr;
    }
    const Application& application = found->second;
    return Clock::now() - *application.answered < lifetime_ ? &*application.snapshot : nullptr;
}

void ObjectSnapshots::drop() {
    for (auto& [peer, application] : applications_) {
        application.snapshot.reset();
    }
}

bool ObjectSnapshots::listsItsObjects(const std::string& peer) {
    bool result = false;
    bus_.getProperty({peer, atspi::rootPath}, atspi::application, "ToolkitName", [&result](const BusReply& reply) {
        result = reply.readStringProperty() == toolkitThatListsItsObjects;
    });
    bus_.finish();
    return result;
}

std::optional<ObjectSnapshot> ObjectSnapshots::askForObjects(const std::string& peer) {
    std::optional<ObjectSnapshot> result;
    // GTK maintains its list only for clients that have called this method, until they disconnect.
    bus_.call({peer, atspi::rootPath}, atspi::application, "GetApplicationBusAddress", {}, [](const BusReply&) {});
    bus_.call({peer, atspi::cachePath}, atspi::cache, "GetItems", {}, [&](const BusReply& reply) {
        if (auto objects = reply.readListedObjects()) {
            result.emplace(peer, std::move(*objects));
        }
    });
    bus_.finish();
    return result;
}

}  // namespace lomaris
