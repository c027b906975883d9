#include "platform/linux/atspi/settable_attributes.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/attribute_failure.h"
#include "platform/linux/atspi/object_attributes.h"

#include <optional>
#include <string>
#include <vector>

namespace lomaris {

namespace {

using atspi::State;
using atspi::States;

/// Its objects have the interface `EditableText` and report success for a change, but do not make it.
constexpr std::string_view toolkitThatIgnoresWrites = "Gecko";

/// A toolkit without a name counts as one that can be written to; every write is verified by reading the text.
void queueUnlessToolkitIgnoresWrites(BusConnection& bus, const ObjectReference& object, SettableAnswer& answer) {
    const ObjectReference root{object.name, atspi::rootPath};
    bus.getProperty(root, atspi::application, "ToolkitName", [&answer](const BusReply& reply) {
        answer.settable = reply.readStringProperty() != toolkitThatIgnoresWrites;
    });
}

void settableFailure(BusConnection& bus, const ObjectReference& object, const BusReply& reply, SettableAnswer& answer) {
    resolveFailure(bus, object, reply, [&answer](AXError error) { answer = {error, false}; });
}

void queueEditable(const ObjectSource& source, const ObjectReference& object, SettableAnswer& answer) {
    source.askStates(
        object, [&bus = source.bus(), object, &answer](const std::optional<States>& states, const BusReply& reply) {
            if (!states) {
                settableFailure(bus, object, reply, answer);
                return;
            }
            answer = {AXError::success, states->has(State::editable) && !states->has(State::readOnly)};
            if (answer.settable) {
                queueUnlessToolkitIgnoresWrites(bus, object, answer);
            }
        });
}

/// The selected text is settable if the object has `Text` and `EditableText` and its states allow editing.
void queueSelectedTextSettable(const ObjectSource& source, const ObjectReference& object, SettableAnswer& answer) {
    source.askInterfaces(object, [source, object, &answer](const std::optional<std::vector<std::string>>& interfaces,
                                                           const BusReply& reply) {
        if (!interfaces) {
            settableFailure(source.bus(), object, reply, answer);
        } else if (!atspi::isAmong(*interfaces, atspi::text)) {
            answer = {AXError::attributeUnsupported, false};
        } else if (!atspi::isAmong(*interfaces, atspi::editableText)) {
            answer = {AXError::success, false};
        } else {
            queueEditable(source, object, answer);
        }
    });
}

}  // namespace

void queueSettable(const ObjectSource& source, const ObjectReference& object, std::string_view attribute,
                   SettableAnswer& answer) {
    if (attribute == attribute::selectedText) {
        queueSelectedTextSettable(source, object, answer);
        return;
    }
    if (!isObjectAttribute(attribute)) {
        answer = {AXError::attributeUnsupported, false};
        return;
    }
    // All other attributes are read-only.
    source.askStates(
        object, [&bus = source.bus(), object, &answer](const std::optional<States>& states, const BusReply& reply) {
            if (states) {
                answer = {AXError::success, false};
            } else {
                settableFailure(bus, object, reply, answer);
            }
        });
}

}  // namespace lomaris
