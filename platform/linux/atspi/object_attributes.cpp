#include "platform/linux/atspi/object_attributes.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/atspi_element.h"
#include "platform/linux/atspi/attribute_failure.h"
#include "platform/linux/atspi/menu_attributes.h"
#include "platform/linux/atspi/roles.h"
#include "platform/linux/atspi/text_attributes.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {

namespace {

using atspi::State;
using atspi::States;

void answerName(AttributeAnswer& answer, std::string_view name) { answer = {AXError::success, textFromUtf8(name)}; }

/// Requests the states of the object and passes them to `take`. On a failure, or for a defunct object, sets `answer`.
void queueStates(const ObjectSource& source, const ObjectReference& object, AttributeAnswer& answer,
                 std::function<void(States)> take) {
    source.askStates(object, [&bus = source.bus(), object, &answer, take = std::move(take)](
                                 const std::optional<States>& states, const BusReply& reply) {
        if (!states) {
            answerFailure(bus, object, reply, answer);
        } else if (states->has(State::defunct)) {
            answer = {AXError::invalidUIElement, NullValue{}};
        } else {
            take(*states);
        }
    });
}

void queueFocused(const ObjectSource& source, const ObjectReference& object, AttributeAnswer& answer) {
    queueStates(source, object, answer, [&answer](States states) {
        answer = {AXError::success, states.has(State::focused)};
    });
}

void queueEnabled(const ObjectSource& source, const ObjectReference& object, AttributeAnswer& answer) {
    queueStates(source, object, answer, [&answer](States states) {
        answer = {AXError::success, states.has(State::sensitive) || states.has(State::enabled)};
    });
}

void queueMain(const ObjectSource& source, const ObjectReference& object, AttributeAnswer& answer) {
    queueStates(source, object, answer, [&answer](States states) {
        answer = {AXError::success, states.has(State::active)};
    });
}

void queueTitle(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    bus.getProperty(object, atspi::accessible, "Name", [&bus, object, &answer](const BusReply& reply) {
        if (const auto name = reply.readStringProperty()) {
            answerName(answer, *name);
        } else {
            answerFailure(bus, object, reply, answer);
        }
    });
}

void queueIdentifier(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    bus.getProperty(object, atspi::accessible, "AccessibleId", [&bus, object, &answer](const BusReply& reply) {
        const auto identifier = reply.readStringProperty();
        if (!identifier) {
            answerFailure(bus, object, reply, answer);
        } else if (identifier->empty()) {
            answer = {AXError::noValue, NullValue{}};
        } else {
            answerName(answer, *identifier);
        }
    });
}

/// Requests the role of the object and passes its number to `take`. On a failure, sets `answer`.
void queueRoleNumber(const ObjectSource& source, const ObjectReference& object, AttributeAnswer& answer,
                     std::function<void(std::uint32_t)> take) {
    source.askRole(object, [&bus = source.bus(), object, &answer, take = std::move(take)](
                               const std::optional<std::uint32_t>& role, const BusReply& reply) {
        if (role) {
            take(*role);
        } else {
            answerFailure(bus, object, reply, answer);
        }
    });
}

/// The name of a role that depends on the parent. If the parent's role is not available, the role without a parent.
void queueRoleBelowParent(const ObjectSource& source, const ObjectReference& object, std::uint32_t role,
                          AttributeAnswer& answer) {
    answerName(answer, roleName(role));
    source.askParent(object, [source, object, role, &answer](const std::optional<ObjectReference>& reference,
                                                             const BusReply& /*reply*/) {
        const auto parent = reference ? atspi::resolved(*reference, object.name) : std::nullopt;
        if (!parent) {
            return;
        }
        source.askRole(*parent,
                       [role, &answer](const std::optional<std::uint32_t>& parentRole, const BusReply& /*reply*/) {
                           if (parentRole) {
                               answerName(answer, roleName(role, *parentRole));
                           }
                       });
    });
}

void queueRole(const ObjectSource& source, const ObjectReference& object, AttributeAnswer& answer) {
    queueRoleNumber(source, object, answer, [source, object, &answer](std::uint32_t role) {
        if (roleDependsOnStates(role)) {
            queueStates(source, object, answer,
                        [role, &answer](States states) { answerName(answer, roleName(role, states)); });
        } else if (roleDependsOnParent(role)) {
            queueRoleBelowParent(source, object, role, answer);
        } else {
            answerName(answer, roleName(role));
        }
    });
}

void queueSubrole(const ObjectSource& source, const ObjectReference& object, AttributeAnswer& answer) {
    queueRoleNumber(source, object, answer, [&answer](std::uint32_t role) {
        const std::string_view name = subroleName(role);
        if (name.empty()) {
            answer = {AXError::attributeUnsupported, NullValue{}};
        } else {
            answerName(answer, name);
        }
    });
}

std::vector<Element> elementsOf(std::vector<ObjectReference> references, const std::string& peer) {
    std::vector<Element> elements;
    elements.reserve(references.size());
    for (ObjectReference& reference : references) {
        if (auto object = atspi::resolved(std::move(reference), peer)) {
            elements.push_back(makeElement(std::move(*object)));
        }
    }
    return elements;
}

/// Requests the number of children first: listing a table of millions of cells would keep the application busy for
/// minutes. The list is always requested from the object and never built from the parents in a snapshot, as a child may
/// name another object as its parent.
void queueChildren(const ObjectSource& source, const ObjectReference& object, AttributeAnswer& answer) {
    source.askChildCount(object, [&bus = source.bus(), object, &answer](const std::optional<std::int32_t>& count,
                                                                        const BusReply& countReply) {
        if (!count) {
            answerFailure(bus, object, countReply, answer);
            return;
        }
        if (*count < 0 || static_cast<std::size_t>(*count) > maximumListLength) {
            answer = {AXError::failure, NullValue{}};
            return;
        }
        if (*count == 0) {
            answer = {AXError::success, std::vector<Element>()};
            return;
        }
        bus.call(object, atspi::accessible, "GetChildren", {}, [&bus, object, &answer](const BusReply& reply) {
            if (auto references = reply.readReferences()) {
                answer = {AXError::success, elementsOf(std::move(*references), object.name)};
            } else {
                answerFailure(bus, object, reply, answer);
            }
        });
    });
}

using AttributeReader = void (*)(const ObjectSource&, const ObjectReference&, AttributeAnswer&);

/// Adapts a reader that always calls the object, as snapshots do not have its data.
template <void (*Reader)(BusConnection&, const ObjectReference&, AttributeAnswer&)>
void queueLive(const ObjectSource& source, const ObjectReference& object, AttributeAnswer& answer) {
    Reader(source.bus(), object, answer);
}

struct NamedReader {
    std::string_view attribute;
    AttributeReader queue;
};

constexpr std::array<NamedReader, 13> readers{{
    {attribute::children, &queueChildren},
    {attribute::enabled, &queueEnabled},
    {attribute::focused, &queueFocused},
    {attribute::identifier, &queueLive<&queueIdentifier>},
    {attribute::main, &queueMain},
    {attribute::menuItemCommandCharacter, &queueLive<&queueMenuItemCharacter>},
    {attribute::menuItemCommandModifiers, &queueLive<&queueMenuItemModifiers>},
    {attribute::role, &queueRole},
    {attribute::selectedText, &queueLive<&queueSelectedText>},
    {attribute::selectedTextRange, &queueLive<&queueSelectedTextRange>},
    {attribute::subrole, &queueSubrole},
    {attribute::title, &queueLive<&queueTitle>},
    {attribute::value, &queueLive<&queueValue>},
}};

const NamedReader* readerOf(std::string_view attribute) {
    const auto* const found = std::find_if(
        readers.begin(), readers.end(), [attribute](const NamedReader& each) { return each.attribute == attribute; });
    return found == readers.end() ? nullptr : found;
}

/// True if the attribute needs the interface `Text` or `Value`, which most objects lack.
bool isTextual(std::string_view attribute) {
    return attribute == attribute::selectedText || attribute == attribute::selectedTextRange ||
           attribute == attribute::value;
}

bool mayAnswer(const std::vector<std::string>& interfaces, std::string_view attribute) {
    return atspi::isAmong(interfaces, atspi::text) ||
           (attribute == attribute::value && atspi::isAmong(interfaces, atspi::value));
}

}  // namespace

bool isObjectAttribute(std::string_view attribute) { return readerOf(attribute) != nullptr; }

void queueAttribute(const ObjectSource& source, const ObjectReference& object, std::string_view attribute,
                    AttributeAnswer& answer) {
    const NamedReader* const reader = readerOf(attribute);
    if (reader == nullptr) {
        answer = {AXError::attributeUnsupported, NullValue{}};
        return;
    }
    reader->queue(source, object, answer);
}

void queueAttributes(const ObjectSource& source, const ObjectReference& object,
                     std::span<const std::string_view> attributes, std::span<AttributeAnswer> answers) {
    for (std::size_t index = 0; index < attributes.size(); ++index) {
        if (!isTextual(attributes[index])) {
            queueAttribute(source, object, attributes[index], answers[index]);
        }
    }
    if (std::none_of(attributes.begin(), attributes.end(), isTextual)) {
        return;
    }
    source.askInterfaces(
        object, [source, object, attributes, answers](const std::optional<std::vector<std::string>>& interfaces,
                                                      const BusReply& /*reply*/) {
            for (std::size_t index = 0; index < attributes.size(); ++index) {
                if (!isTextual(attributes[index])) {
                    continue;
                }
                if (interfaces && !mayAnswer(*interfaces, attributes[index])) {
                    answers[index] = {AXError::attributeUnsupported, NullValue{}};
                } else {
                    queueAttribute(source, object, attributes[index], answers[index]);
                }
            }
        });
}

AXError performObjectAction(BusConnection& bus, const ObjectReference& object, std::string_view action) {
    if (action != action::press) {
        return AXError::actionUnsupported;
    }
    AXError error = AXError::failure;
    bus.call(object, atspi::action, "DoAction", {std::int32_t{0}}, [&](const BusReply& reply) {
        if (reply.error() == AXError::success) {
            const auto isDone = reply.readBoolean();
            error = !isDone ? AXError::failure : *isDone ? AXError::success : AXError::cannotComplete;
            return;
        }
        resolveFailure(bus, object, reply, [&error](AXError code) {
            error = code == AXError::attributeUnsupported ? AXError::actionUnsupported : code;
        });
    });
    bus.finish();
    return error;
}

}  // namespace lomaris
