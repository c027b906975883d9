#include "platform/linux/atspi/attribute_failure.h"

#include "platform/linux/atspi/atspi.h"

namespace lomaris {

void resolveFailure(BusConnection& bus, const ObjectReference& object, const BusReply& reply,
                    const std::function<void(AXError)>& take) {
    if (reply.error() == AXError::success) {
        take(AXError::failure);
        return;
    }
    if (reply.failure() != BusFailure::unknownObject) {
        take(reply.error());
        return;
    }
    bus.ask(object, atspi::accessible, "GetState", {}, [take](const BusReply& states) {
        const auto bits = states.readBits();
        if (bits && !atspi::States(*bits).has(atspi::State::defunct)) {
            take(AXError::attributeUnsupported);
        } else {
            take(states.error() == AXError::cannotComplete ? states.error() : AXError::invalidUIElement);
        }
    });
}

void answerFailure(BusConnection& bus, const ObjectReference& object, const BusReply& reply, AttributeAnswer& answer) {
    resolveFailure(bus, object, reply, [&answer](AXError error) { answer = {error, NullValue{}}; });
}

}  // namespace lomaris
