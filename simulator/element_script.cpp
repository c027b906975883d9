#include "simulator/element_script.h"

#include "simulator/action_reader.h"
#include "simulator/value_reader.h"

namespace lomaris::simulator {
namespace {

SettableAnswer readSettable(const JsonNode& node) {
    if (node.value().is_boolean()) {
        return {AXError::success, node.boolean()};
    }
    if (!node.value().is_object()) {
        node.refuse("true, false or {\"error\": code}");
    }
    node.allowKeys({"error"});
    return {readErrorCode(node.get("error")), false};
}

ElementScript::Set readSet(const std::string& name, const JsonNode& node, Stage& stage) {
    ElementScript::Set set{name, SetEffect::none, AXError::success, {}};
    const Json& value = node.value();
    if (value.is_string() || value.is_number_integer()) {
        set.answer = readErrorCode(node);
        return set;
    }
    if (!value.is_object()) {
        node.refuse(errorCodeForms() + "; or an object with some of the keys answers, writes, does");
    }
    node.allowKeys({"answers", "writes", "does"});
    if (const auto answers = node.find("answers")) {
        set.answer = readErrorCode(*answers);
    }
    if (const auto writes = node.find("writes"); writes && writes->boolean()) {
        set.effect = SetEffect::written;
    }
    if (const auto does = node.find("does")) {
        set.reactions = readReactions(*does, stage);
    }
    return set;
}

ElementScript::Action readAction(const std::string& name, const JsonNode& node, Stage& stage) {
    node.allowKeys({"answers", "does"});
    ElementScript::Action action{name, AXError::success, {}};
    if (const auto answers = node.find("answers")) {
        action.answer = readErrorCode(*answers);
    }
    if (const auto does = node.find("does")) {
        action.reactions = readReactions(*does, stage);
    }
    return action;
}

}  // namespace

std::vector<std::string_view> scriptKeysAnd(std::vector<std::string_view> others) {
    others.insert(others.end(), {"attributes", "settable", "set", "actions", "processIdentifierFails"});
    return others;
}

ElementScript readElementScript(const JsonNode& node, Stage& stage) {
    ElementScript script;
    if (const auto attributes = node.find("attributes")) {
        for (const auto& [name, answers] : attributes->entries()) {
            script.answers.emplace_back(name, readAnswers(answers, stage));
        }
    }
    if (const auto settable = node.find("settable")) {
        for (const auto& [name, answer] : settable->entries()) {
            script.settable.emplace_back(name, readSettable(answer));
        }
    }
    if (const auto set = node.find("set")) {
        for (const auto& [name, code] : set->entries()) {
            script.sets.push_back(readSet(name, code, stage));
        }
    }
    if (const auto actions = node.find("actions")) {
        for (const auto& [name, action] : actions->entries()) {
            script.actions.push_back(readAction(name, action, stage));
        }
    }
    if (const auto fails = node.find("processIdentifierFails")) {
        script.processIdentifierFails = fails->boolean();
    }
    return script;
}

void apply(const ElementScript& script, SimulatedElement element) {
    for (const auto& [name, answers] : script.answers) {
        element.answersInTurn(name, answers);
    }
    for (const auto& [name, answer] : script.settable) {
        element.answersSettable(name, answer);
    }
    for (const ElementScript::Set& set : script.sets) {
        element.onSetInTurn(set.name, set.effect, set.reactions, set.answer);
    }
    for (const ElementScript::Action& action : script.actions) {
        element.onActionInTurn(action.name, action.reactions, action.answer);
    }
    if (script.processIdentifierFails) {
        element.processIdentifierFails(*script.processIdentifierFails);
    }
}

}  // namespace lomaris::simulator
