#include "platform/simulated/simulated_element.h"

#include "platform/simulated/element_state.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/text_behaviour.h"

#include <string>
#include <utility>

namespace lomaris {
namespace {

void requireInside(TextRange range, TextView text) {
    if (!simulated::isInside(range, text)) {
        simulated::abortScenario("a selection lies outside of its text");
    }
}

}  // namespace

AttributeAnswer answer(AttributeValue value) {
    AttributeAnswer made;
    made.value = std::move(value);
    return made;
}

AttributeAnswer answer(AXError error) {
    AttributeAnswer made;
    made.error = error;
    return made;
}

Element SimulatedElement::element() const { return state_->element; }

SimulatedElement& SimulatedElement::answers(std::string_view attribute, AttributeValue value) {
    return answersInTurn(attribute, {answer(std::move(value))});
}

SimulatedElement& SimulatedElement::answers(std::string_view attribute, AXError error) {
    return answersInTurn(attribute, {answer(error)});
}

SimulatedElement& SimulatedElement::answers(std::string_view attribute, AttributeAnswer scripted) {
    return answersInTurn(attribute, {std::move(scripted)});
}

SimulatedElement& SimulatedElement::answersInTurn(std::string_view attribute, std::vector<AttributeAnswer> scripted) {
    for (AttributeAnswer& each : scripted) {
        if (each.error != AXError::success) {
            each.value.emplace<NullValue>();
        }
    }
    simulated::AttributeScript& script = state_->script(attribute);
    script.answers = std::move(scripted);
    script.reads = 0;
    return *this;
}

SimulatedElement& SimulatedElement::answersSettable(std::string_view attribute, SettableAnswer scripted) {
    state_->script(attribute).settable = scripted;
    return *this;
}

SimulatedElement& SimulatedElement::answersSet(std::string_view attribute, AXError error) {
    return onSetInTurn(attribute, SetEffect::none, {}, error);
}

SimulatedElement& SimulatedElement::onSetInTurn(std::string_view attribute, SetEffect effect,
                                                std::vector<Reaction> reactions, AXError error) {
    state_->script(attribute).set =
        simulated::SetScript{error, effect, simulated::ReactionsInTurn(std::move(reactions))};
    return *this;
}

SimulatedElement& SimulatedElement::answersAction(std::string_view action, AXError error) {
    return onActionInTurn(action, {}, error);
}

SimulatedElement& SimulatedElement::onAction(std::string_view action, Reaction reaction, AXError error) {
    return onActionInTurn(action, {std::move(reaction)}, error);
}

SimulatedElement& SimulatedElement::onActionInTurn(std::string_view action, std::vector<Reaction> reactions,
                                                   AXError error) {
    simulated::ActionScript* script = state_->findAction(action);
    if (script == nullptr) {
        script = &state_->actions.emplace_back();
        script->name = action;
    }
    script->answer = error;
    script->reactions = simulated::ReactionsInTurn(std::move(reactions));
    return *this;
}

SimulatedElement& SimulatedElement::processIdentifierFails(bool fails) {
    state_->processIdentifierFails = fails;
    return *this;
}

const Text& SimulatedTextElement::text() const { return state_->text->text; }

TextRange SimulatedTextElement::selection() const { return state_->text->selection; }

SimulatedTextElement& SimulatedTextElement::select(TextRange range) {
    requireInside(range, text());
    state_->text->selection = range;
    return *this;
}

SimulatedTextElement& SimulatedTextElement::setText(Text text, TextRange selection) {
    requireInside(selection, text);
    state_->text = simulated::TextState{std::move(text), selection};
    return *this;
}

}  // namespace lomaris
