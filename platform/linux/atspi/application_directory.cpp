#include "platform/linux/atspi/application_directory.h"

#include "platform/linux/atspi/atspi.h"

#include <utility>
#include <vector>

namespace lomaris {

namespace {

const ObjectReference& registry() {
    static const ObjectReference object{atspi::registryName, atspi::rootPath};
    return object;
}

const ObjectReference& messageBus() {
    static const ObjectReference object{"org.freedesktop.DBus", "/org/freedesktop/DBus"};
    return object;
}

}  // namespace

void ApplicationDirectory::askForProcessOf(const std::string& name) {
    bus_.call(messageBus(), "org.freedesktop.DBus", "GetConnectionUnixProcessID", {name},
              [this, name](const BusReply& reply) {
                  if (const auto process = reply.readUnsigned()) {
                      processes_.insert_or_assign(name, static_cast<ProcessIdentifier>(*process));
                  }
              });
}

std::optional<ProcessIdentifier> ApplicationDirectory::processOf(const std::string& name) {
    if (!processes_.contains(name)) {
        askForProcessOf(name);
        bus_.finish();
    }
    const auto found = processes_.find(name);
    return found == processes_.end() ? std::nullopt : std::optional(found->second);
}

ApplicationRoot ApplicationDirectory::rootOf(ProcessIdentifier processIdentifier) {
    AXError error = AXError::success;
    std::vector<ObjectReference> applications;
    bus_.call(registry(), atspi::accessible, "GetChildren", {}, [&](const BusReply& reply) {
        error = reply.error();
        applications = reply.readReferences().value_or(std::vector<ObjectReference>());
        for (const ObjectReference& application : applications) {
            if (!processes_.contains(application.name)) {
                askForProcessOf(application.name);
            }
        }
    });
    bus_.finish();
    if (error == AXError::cannotComplete) {
        return {error, {}};
    }
    for (ObjectReference& application : applications) {
        const auto process = processes_.find(application.name);
        if (process != processes_.end() && process->second == processIdentifier) {
            return {AXError::success, std::move(application)};
        }
    }
    return {AXError::apiDisabled, {}};
}

}  // namespace lomaris
