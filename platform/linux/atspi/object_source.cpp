#include "platform/linux/atspi/object_source.h"

namespace lomaris {

namespace {

/// The reply that accompanies a value from a snapshot.
const BusReply& noReply() {
    static const BusReply reply(AXError::success);
    return reply;
}

}  // namespace

const ListedObject* ObjectSource::listed(const ObjectReference& object) const {
    return snapshot_ == nullptr ? nullptr : snapshot_->find(object);
}

void ObjectSource::askRole(const ObjectReference& object, const Take<std::uint32_t>& take) const {
    if (const ListedObject* const known = listed(object)) {
        take(known->role, noReply());
        return;
    }
    bus_->ask(object, atspi::accessible, "GetRole", {},
              [take](const BusReply& reply) { take(reply.readUnsigned(), reply); });
}

void ObjectSource::askStates(const ObjectReference& object, const Take<atspi::States>& take) const {
    if (const ListedObject* const known = listed(object)) {
        take(atspi::States(known->states), noReply());
        return;
    }
    bus_->ask(object, atspi::accessible, "GetState", {}, [take](const BusReply& reply) {
        const auto bits = reply.readBits();
        take(bits ? std::optional(atspi::States(*bits)) : std::nullopt, reply);
    });
}

void ObjectSource::askInterfaces(const ObjectReference& object, const Take<std::vector<std::string>>& take) const {
    if (const ListedObject* const known = listed(object)) {
        take(known->interfaces, noReply());
        return;
    }
    bus_->ask(object, atspi::accessible, "GetInterfaces", {},
              [take](const BusReply& reply) { take(reply.readStrings(), reply); });
}

void ObjectSource::askChildCount(const ObjectReference& object, const Take<std::int32_t>& take) const {
    const ListedObject* const known = listed(object);
    if (known != nullptr && known->childCount >= 0) {
        take(known->childCount, noReply());
        return;
    }
    bus_->getProperty(object, atspi::accessible, "ChildCount",
                      [take](const BusReply& reply) { take(reply.readIntegerProperty(), reply); });
}

void ObjectSource::askParent(const ObjectReference& object, const Take<ObjectReference>& take) const {
    if (const ListedObject* const known = listed(object)) {
        take(known->parent, noReply());
        return;
    }
    bus_->getProperty(object, atspi::accessible, "Parent",
                      [take](const BusReply& reply) { take(reply.readReferenceProperty(), reply); });
}

}  // namespace lomaris
