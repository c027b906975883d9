#include "platform/linux/atspi/window_raising.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/attribute_failure.h"
#include "platform/linux/atspi/focus_search.h"
#include "platform/linux/atspi/object_attributes.h"

#include <algorithm>

namespace lomaris {

bool isWindow(BusConnection& bus, const ObjectReference& object) {
    const ApplicationWindows windows = applicationWindows(bus, {object.name, atspi::rootPath});
    return std::any_of(windows.windows.begin(), windows.windows.end(),
                       [&object](const ApplicationWindow& window) { return window.object == object; });
}

AXError raiseWindow(BusConnection& bus, const ObjectReference& window, ProcessIdentifier processIdentifier,
                    const WindowRaiser& raiser) {
    AttributeAnswer title;
    queueAttribute(ObjectSource(bus), window, attribute::title, title);
    bus.finish();
    const auto* const text = std::get_if<Text>(&title.value);
    if (text == nullptr) {
        return title.error;
    }
    return raiser(processIdentifier, *text) ? AXError::success : AXError::cannotComplete;
}

AXError grabFocus(BusConnection& bus, const ObjectReference& object) {
    AXError error = AXError::failure;
    bus.call(object, atspi::component, "GrabFocus", {}, [&](const BusReply& reply) {
        if (reply.readBoolean()) {
            error = AXError::success;
        } else {
            resolveFailure(bus, object, reply, [&error](AXError code) { error = code; });
        }
    });
    bus.finish();
    if (error != AXError::success) {
        return error;
    }
    // The reply alone is not reliable; the state is.
    AttributeAnswer focused;
    queueAttribute(ObjectSource(bus), object, attribute::focused, focused);
    bus.finish();
    if (focused.error != AXError::success) {
        return focused.error;
    }
    return focused.value == AttributeValue(true) ? AXError::success : AXError::cannotComplete;
}

}  // namespace lomaris
