#include "platform/simulated/simulated_accessibility.h"

#include "platform/simulated/describe.h"
#include "text/case_insensitive_search.h"

#include <string>
#include <utility>
#include <variant>

namespace lomaris::simulated {

bool SimulatedAccessibility::isProcessTrusted(TrustPrompt prompt) {
    if (!journal_.admits()) {
        return false;
    }
    const bool mayAsk = prompt == TrustPrompt::ask;
    const std::size_t call = journal_.begin(mayAsk ? "isProcessTrusted(ask)" : "isProcessTrusted(none)");
    latency_.pass("isProcessTrusted");
    const bool answer = mayAsk ? promptAnswer_.value_or(isTrusted_) : isTrusted_;
    journal_.line(call) += answer ? " -> true" : " -> false";
    return answer;
}

Element SimulatedAccessibility::applicationElement(ProcessIdentifier processIdentifier) {
    if (!journal_.admits()) {
        return makeElement(ReferenceKind::root, processIdentifier, 0, nullptr);
    }
    const std::size_t call = journal_.begin("applicationElement(");
    appendInteger(journal_.line(call), processIdentifier);
    journal_.line(call) += ')';
    latency_.pass("applicationElement");
    return makeElement(ReferenceKind::root, processIdentifier, 0, nullptr);
}

Element SimulatedAccessibility::systemWideElement() {
    if (!journal_.admits()) {
        return applications_.systemWide().element;
    }
    journal_.begin("systemWideElement()");
    latency_.pass("systemWideElement");
    return applications_.systemWide().element;
}

AttributeAnswer SimulatedAccessibility::copyAttribute(const Element& element, std::string_view attribute) {
    if (!journal_.admits()) {
        return {AXError::failure, NullValue{}};
    }
    const std::size_t call = beginWithElement("copyAttribute(", element, attribute);
    journal_.line(call) += ")";
    latency_.passCrossing("copyAttribute");
    AttributeAnswer answer = read(element, attribute);
    std::string& line = journal_.line(call);
    line += " -> ";
    appendAnswer(line, answer);
    return answer;
}

ElementAnswer SimulatedAccessibility::copyElementAttribute(const Element& element, std::string_view attribute) {
    if (!journal_.admits()) {
        return {AXError::failure, std::nullopt};
    }
    const std::size_t call = beginWithElement("copyElementAttribute(", element, attribute);
    journal_.line(call) += ")";
    latency_.passCrossing("copyElementAttribute");
    AttributeAnswer read = this->read(element, attribute);
    ElementAnswer answer{read.error, std::nullopt};
    if (const auto* held = std::get_if<Element>(&read.value)) {
        answer.element = *held;
    } else if (!std::holds_alternative<NullValue>(read.value)) {
        answer.element = makeElement(ReferenceKind::noElement, 0, 0, nullptr);
    }
    std::string& line = journal_.line(call);
    line += " -> ";
    appendAnswer(line, answer);
    return answer;
}

std::vector<std::vector<AttributeAnswer>> SimulatedAccessibility::copyAttributes(
    std::span<const Element> elements, std::span<const std::string_view> attributes) {
    if (!journal_.admits()) {
        return std::vector(elements.size(),
                           std::vector(attributes.size(), AttributeAnswer{AXError::failure, NullValue{}}));
    }
    const std::size_t call = journal_.begin("copyAttributes(");
    const auto appendName = [](std::string& line, std::string_view name) { line += name; };
    appendList(journal_.line(call), elements, appendElement);
    journal_.line(call) += ", ";
    appendList(journal_.line(call), attributes, appendName);
    journal_.line(call) += ")";
    latency_.passCrossing("copyAttributes");

    std::vector<std::vector<AttributeAnswer>> answers;
    answers.reserve(elements.size());
    for (const Element& element : elements) {
        std::vector<AttributeAnswer>& row = answers.emplace_back();
        row.reserve(attributes.size());
        for (const std::string_view attribute : attributes) {
            row.push_back(read(element, attribute));
        }
    }

    const auto appendOne = [](std::string& line, const AttributeAnswer& answer) { appendAnswer(line, answer); };
    const auto appendRow = [appendOne](std::string& line, const auto& row) { appendList(line, row, appendOne); };
    journal_.line(call) += " -> ";
    appendList(journal_.line(call), answers, appendRow);
    return answers;
}

AXError SimulatedAccessibility::setAttribute(const Element& element, std::string_view attribute,
                                             const AttributeValue& value) {
    if (!journal_.admits()) {
        return AXError::failure;
    }
    const std::size_t call = beginWithElement("setAttribute(", element, attribute);
    journal_.line(call) += ", ";
    appendValue(journal_.line(call), value);
    journal_.line(call) += ")";
    latency_.passCrossing("setAttribute");
    const Target target = targetOf(element);
    const AXError answer = target.state == nullptr ? target.error : reactor_.set(*target.state, attribute, value);
    journal_.line(call) += " -> ";
    appendError(journal_.line(call), answer);
    return answer;
}

SettableAnswer SimulatedAccessibility::isAttributeSettable(const Element& element, std::string_view attribute) {
    if (!journal_.admits()) {
        return {AXError::failure, false};
    }
    const std::size_t call = beginWithElement("isAttributeSettable(", element, attribute);
    journal_.line(call) += ")";
    latency_.passCrossing("isAttributeSettable");
    const SettableAnswer answer = askSettable(element, attribute);
    journal_.line(call) += " -> ";
    appendAnswer(journal_.line(call), answer);
    return answer;
}

std::vector<SettableAnswer> SimulatedAccessibility::areAttributesSettable(std::span<const Element> elements,
                                                                          std::string_view attribute) {
    if (!journal_.admits()) {
        return std::vector(elements.size(), SettableAnswer{AXError::failure, false});
    }
    const std::size_t call = journal_.begin("areAttributesSettable(");
    appendList(journal_.line(call), elements, appendElement);
    journal_.line(call) += ", ";
    journal_.line(call) += attribute;
    journal_.line(call) += ")";
    latency_.passCrossing("areAttributesSettable");
    std::vector<SettableAnswer> answers;
    answers.reserve(elements.size());
    for (const Element& element : elements) {
        answers.push_back(askSettable(element, attribute));
    }
    const auto appendOne = [](std::string& line, const SettableAnswer& answer) { appendAnswer(line, answer); };
    journal_.line(call) += " -> ";
    appendList(journal_.line(call), answers, appendOne);
    return answers;
}

AXError SimulatedAccessibility::performAction(const Element& element, std::string_view action) {
    if (!journal_.admits()) {
        return AXError::failure;
    }
    const std::size_t call = beginWithElement("performAction(", element, action);
    journal_.line(call) += ")";
    latency_.passCrossing("performAction");
    const Target target = targetOf(element);
    const AXError answer = target.state == nullptr ? target.error : reactor_.perform(*target.state, action);
    journal_.line(call) += " -> ";
    appendError(journal_.line(call), answer);
    return answer;
}

std::optional<ProcessIdentifier> SimulatedAccessibility::processIdentifier(const Element& element) {
    if (!journal_.admits()) {
        return std::nullopt;
    }
    const std::size_t call = journal_.begin("processIdentifier(");
    appendElement(journal_.line(call), element);
    latency_.pass("processIdentifier");
    journal_.line(call) += ") -> ";
    const ElementState* state = find(element).state;
    if (state == nullptr || state->process == nullptr || state->processIdentifierFails) {
        journal_.line(call) += "nothing";
        return std::nullopt;
    }
    const ProcessIdentifier answer = state->process->application.processIdentifier;
    appendInteger(journal_.line(call), answer);
    return answer;
}

bool SimulatedAccessibility::containsIgnoringCase(TextView text, TextView word) {
    if (!journal_.admits()) {
        return false;
    }
    const std::size_t call = journal_.begin("containsIgnoringCase(");
    appendQuoted(journal_.line(call), text);
    journal_.line(call) += ", ";
    appendQuoted(journal_.line(call), word);
    latency_.pass("containsIgnoringCase");
    const bool answer = lomaris::containsIgnoringCase(text, word, caseRules_);
    journal_.line(call) += answer ? ") -> true" : ") -> false";
    return answer;
}

SimulatedAccessibility::Target SimulatedAccessibility::targetOf(const Element& element) {
    const Target target = find(element);
    const bool isHung = target.state != nullptr && target.state->process != nullptr && target.state->process->isHung;
    return isHung ? Target{AXError::cannotComplete, nullptr} : target;
}

SimulatedAccessibility::Target SimulatedAccessibility::find(const Element& element) {
    const SimulatedReference& reference = referenceOf(element);
    if (reference.kind() == ReferenceKind::noElement) {
        return {AXError::illegalArgument, nullptr};
    }
    if (reference.kind() == ReferenceKind::root) {
        ProcessState* process = applications_.find(reference.process());
        return process == nullptr ? Target{AXError::invalidUIElement, nullptr}
                                  : Target{AXError::success, &process->root};
    }
    ElementState* state = reference.state();
    if (state->process != nullptr && !state->process->isRunning()) {
        return {AXError::invalidUIElement, nullptr};
    }
    return {AXError::success, state};
}

AttributeAnswer SimulatedAccessibility::read(const Element& element, std::string_view attribute) {
    const Target target = targetOf(element);
    return target.state == nullptr ? AttributeAnswer{target.error, NullValue{}} : target.state->read(attribute);
}

SettableAnswer SimulatedAccessibility::askSettable(const Element& element, std::string_view attribute) {
    const Target target = targetOf(element);
    return target.state == nullptr ? SettableAnswer{target.error, false} : target.state->isSettable(attribute);
}

std::size_t SimulatedAccessibility::beginWithElement(std::string_view call, const Element& element,
                                                     std::string_view name) {
    const std::size_t number = journal_.begin(call);
    std::string& line = journal_.line(number);
    appendElement(line, element);
    line += ", ";
    line += name;
    return number;
}

}  // namespace lomaris::simulated
