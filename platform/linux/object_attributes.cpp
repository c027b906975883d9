#include "platform/linux/object_attributes.h"

#include "platform/attributes.h"
#include "platform/linux/atspi.h"
#include "platform/linux/atspi_element.h"
#include "platform/linux/attribute_failure.h"
#include "platform/linux/menu_attributes.h"
#include "platform/linux/roles.h"
#include "platform/linux/text_attributes.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {

namespace {

using atspi::State;
using atspi::States;

void answerName(AttributeAnswer& answer, std::string_view name) { answer = {AXError::success, textFromUtf8(name)}; }

/// Asks for the states of the object; `take` gets them, anything else becomes the answer.
void queueStates(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer,
                 std::function<void(States)> take) {
    bus.call(object, atspi::accessible, "GetState", {},
             [&bus, object, &answer, take = std::move(take)](const BusReply& reply) {
                 const auto bits = reply.readBits();
                 if (!bits) {
                     answerFailure(bus, object, reply, answer);
                 } else if (States(*bits).has(State::defunct)) {
                     answer = {AXError::invalidUIElement, NullValue{}};
                 } else {
                     take(States(*bits));
                 }
             });
}

void queueFocused(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    queueStates(bus, object, answer, [&answer](States states) {
        answer = {AXError::success, states.has(State::focused)};
    });
}

void queueEnabled(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    queueStates(bus, object, answer, [&answer](States states) {
        answer = {AXError::success, states.has(State::sensitive) || states.has(State::enabled)};
    });
}

void queueMain(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    queueStates(bus, object, answer, [&answer](States states) {
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

void queueRoleNumber(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer,
                     std::function<void(std::uint32_t)> take) {
    bus.call(object, atspi::accessible, "GetRole", {},
             [&bus, object, &answer, take = std::move(take)](const BusReply& reply) {
                 if (const auto role = reply.readUnsigned()) {
                     take(*role);
                 } else {
                     answerFailure(bus, object, reply, answer);
                 }
             });
}

/// A parent that cannot be asked leaves the plain name of the role.
void queueRoleBelowParent(BusConnection& bus, const ObjectReference& object, std::uint32_t role,
                          AttributeAnswer& answer) {
    answerName(answer, roleName(role));
    bus.getProperty(object, atspi::accessible, "Parent", [&bus, object, role, &answer](const BusReply& reply) {
        auto reference = reply.readReferenceProperty();
        const auto parent = reference ? atspi::resolved(std::move(*reference), object.name) : std::nullopt;
        if (!parent) {
            return;
        }
        bus.call(*parent, atspi::accessible, "GetRole", {}, [role, &answer](const BusReply& parentReply) {
            if (const auto parentRole = parentReply.readUnsigned()) {
                answerName(answer, roleName(role, *parentRole));
            }
        });
    });
}

void queueRole(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    queueRoleNumber(bus, object, answer, [&bus, object, &answer](std::uint32_t role) {
        if (roleDependsOnStates(role)) {
            queueStates(bus, object, answer,
                        [role, &answer](States states) { answerName(answer, roleName(role, states)); });
        } else if (roleDependsOnParent(role)) {
            queueRoleBelowParent(bus, object, role, answer);
        } else {
            answerName(answer, roleName(role));
        }
    });
}

void queueSubrole(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    queueRoleNumber(bus, object, answer, [&answer](std::uint32_t role) {
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

/// The number of the children is asked for first: a table of millions of cells would be busy for minutes to list them.
void queueChildren(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    bus.getProperty(object, atspi::accessible, "ChildCount", [&bus, object, &answer](const BusReply& countReply) {
        const auto count = countReply.readIntegerProperty();
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

using AttributeReader = void (*)(BusConnection&, const ObjectReference&, AttributeAnswer&);

struct NamedReader {
    std::string_view attribute;
    AttributeReader queue;
};

constexpr std::array<NamedReader, 13> readers{{
    {attribute::children, &queueChildren},
    {attribute::enabled, &queueEnabled},
    {attribute::focused, &queueFocused},
    {attribute::identifier, &queueIdentifier},
    {attribute::main, &queueMain},
    {attribute::menuItemCommandCharacter, &queueMenuItemCharacter},
    {attribute::menuItemCommandModifiers, &queueMenuItemModifiers},
    {attribute::role, &queueRole},
    {attribute::selectedText, &queueSelectedText},
    {attribute::selectedTextRange, &queueSelectedTextRange},
    {attribute::subrole, &queueSubrole},
    {attribute::title, &queueTitle},
    {attribute::value, &queueValue},
}};

const NamedReader* readerOf(std::string_view attribute) {
    const auto* const found = std::find_if(
        readers.begin(), readers.end(), [attribute](const NamedReader& each) { return each.attribute == attribute; });
    return found == readers.end() ? nullptr : found;
}

bool contains(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Its texts offer to be edited, answer that they were, and stay as they are.
constexpr std::string_view toolkitThatIgnoresWrites = "Gecko";

/// A toolkit that does not give its name is taken for one that writes; a write is read back anyway.
void queueUnlessToolkitIgnoresWrites(BusConnection& bus, const ObjectReference& object, SettableAnswer& answer) {
    const ObjectReference root{object.name, atspi::rootPath};
    bus.getProperty(root, atspi::application, "ToolkitName", [&answer](const BusReply& reply) {
        answer.settable = reply.readStringProperty() != toolkitThatIgnoresWrites;
    });
}

/// Whether the selected text of the object can be written: it offers to be edited, and says that it is editable now.
void queueSelectedTextSettable(BusConnection& bus, const ObjectReference& object, SettableAnswer& answer) {
    bus.call(object, atspi::accessible, "GetInterfaces", {}, [&bus, object, &answer](const BusReply& reply) {
        const auto interfaces = reply.readStrings();
        if (!interfaces) {
            resolveFailure(bus, object, reply, [&answer](AXError error) { answer = {error, false}; });
            return;
        }
        if (!contains(*interfaces, atspi::text)) {
            answer = {AXError::attributeUnsupported, false};
            return;
        }
        if (!contains(*interfaces, atspi::editableText)) {
            answer = {AXError::success, false};
            return;
        }
        bus.call(object, atspi::accessible, "GetState", {}, [&bus, object, &answer](const BusReply& statesReply) {
            const auto bits = statesReply.readBits();
            if (!bits) {
                resolveFailure(bus, object, statesReply, [&answer](AXError error) { answer = {error, false}; });
                return;
            }
            const States states(*bits);
            answer = {AXError::success, states.has(State::editable) && !states.has(State::readOnly)};
            if (answer.settable) {
                queueUnlessToolkitIgnoresWrites(bus, object, answer);
            }
        });
    });
}

}  // namespace

void queueAttribute(BusConnection& bus, const ObjectReference& object, std::string_view attribute,
                    AttributeAnswer& answer) {
    const NamedReader* const reader = readerOf(attribute);
    if (reader == nullptr) {
        answer = {AXError::attributeUnsupported, NullValue{}};
        return;
    }
    reader->queue(bus, object, answer);
}

void queueSettable(BusConnection& bus, const ObjectReference& object, std::string_view attribute,
                   SettableAnswer& answer) {
    if (attribute == attribute::selectedText) {
        queueSelectedTextSettable(bus, object, answer);
        return;
    }
    if (readerOf(attribute) == nullptr) {
        answer = {AXError::attributeUnsupported, false};
        return;
    }
    // The other attributes are only read.
    bus.call(object, atspi::accessible, "GetState", {}, [&bus, object, &answer](const BusReply& reply) {
        if (reply.readBits()) {
            answer = {AXError::success, false};
        } else {
            resolveFailure(bus, object, reply, [&answer](AXError error) { answer = {error, false}; });
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
