#include "platform/simulated/element_state.h"

#include "platform/simulated/text_behaviour.h"

#include <algorithm>

namespace lomaris::simulated {

bool SimulatedReference::isSameElement(const ElementReference& other) const {
    const auto& that = static_cast<const SimulatedReference&>(other);
    if (kind_ == ReferenceKind::noElement || kind_ != that.kind_) {
        return this == &that;
    }
    return process_ == that.process_ && number_ == that.number_;
}

const SimulatedReference& referenceOf(const Element& element) {
    return static_cast<const SimulatedReference&>(element.reference());
}

Element makeElement(ReferenceKind kind, ProcessIdentifier process, std::uint32_t number, ElementState* state) {
    return Element(std::make_shared<SimulatedReference>(kind, process, number, state));
}

AttributeScript* ElementState::find(std::string_view attribute) {
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [attribute](const AttributeScript& script) { return script.name == attribute; });
    return found == attributes.end() ? nullptr : &*found;
}

AttributeScript& ElementState::script(std::string_view attribute) {
    if (AttributeScript* found = find(attribute)) {
        return *found;
    }
    AttributeScript& added = attributes.emplace_back();
    added.name = attribute;
    return added;
}

ActionScript* ElementState::findAction(std::string_view action) {
    const auto found = std::find_if(actions.begin(), actions.end(),
                                    [action](const ActionScript& script) { return script.name == action; });
    return found == actions.end() ? nullptr : &*found;
}

AttributeAnswer ElementState::read(std::string_view attribute) {
    if (AttributeScript* found = find(attribute); found != nullptr && !found->answers.empty()) {
        const std::size_t turn = std::min(found->reads, found->answers.size() - 1);
        ++found->reads;
        return found->answers[turn];
    }
    if (text) {
        return readText(*text, attribute);
    }
    return {AXError::attributeUnsupported, NullValue{}};
}

SettableAnswer ElementState::isSettable(std::string_view attribute) {
    const AttributeScript* found = find(attribute);
    if (found != nullptr && found->settable) {
        return *found->settable;
    }
    if (text && isTextSettable(attribute)) {
        return {AXError::success, true};
    }
    const bool canBeRead =
        (found != nullptr && !found->answers.empty()) || (text && readText(*text, attribute).error == AXError::success);
    return {canBeRead ? AXError::success : AXError::attributeUnsupported, false};
}

AXError ElementState::set(std::string_view attribute, const AttributeValue& value) {
    AttributeScript* found = find(attribute);
    if (found != nullptr && found->set) {
        const SetScript& scripted = *found->set;
        if (scripted.effect == SetEffect::written) {
            static_cast<void>(write(found, attribute, value));
        }
        return scripted.answer;
    }
    const SettableAnswer settable = isSettable(attribute);
    if (settable.error != AXError::success) {
        return settable.error;
    }
    if (!settable.settable) {
        return AXError::attributeUnsupported;
    }
    return write(found, attribute, value);
}

AXError ElementState::write(AttributeScript* script, std::string_view attribute, const AttributeValue& value) {
    if (text && isTextSettable(attribute)) {
        return setText(*text, attribute, value);
    }
    script->answers = {AttributeAnswer{AXError::success, value}};
    script->reads = 0;
    return AXError::success;
}

}  // namespace lomaris::simulated
