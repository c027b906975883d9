#include "platform/simulated/reactor.h"

#include "platform/simulated/meanwhile.h"
#include "platform/simulated/world.h"

#include <algorithm>

namespace lomaris::simulated {

std::optional<Reaction> ReactionsInTurn::next() {
    if (reactions_.empty()) {
        return std::nullopt;
    }
    const std::size_t turn = std::min(turn_, reactions_.size() - 1);
    ++turn_;
    return reactions_[turn];
}

void Reactor::pressKey(KeyStroke keyStroke, std::optional<ProcessIdentifier> processIdentifier) {
    const std::optional<ProcessIdentifier> target = processIdentifier ? processIdentifier : world_.applications.front();
    ProcessState* process = target ? world_.applications.find(*target) : nullptr;
    if (process == nullptr) {
        return;
    }
    if (KeyReactions* found = process->find(keyStroke)) {
        react(process, found->reactions);
    }
}

AXError Reactor::perform(ElementState& element, std::string_view action) {
    ActionScript* script = element.findAction(action);
    if (script == nullptr) {
        return AXError::actionUnsupported;
    }
    // Copied first, because the reaction may change the script of the action.
    const AXError answer = script->answer;
    react(element.process, script->reactions);
    return answer;
}

AXError Reactor::set(ElementState& element, std::string_view attribute, const AttributeValue& value) {
    const AXError answer = element.set(attribute, value);
    AttributeScript* script = element.find(attribute);
    if (script != nullptr && script->set) {
        react(element.process, script->set->reactions);
    }
    return answer;
}

void Reactor::react(const ProcessState* process, ReactionsInTurn& reactions) {
    if (!isAlive(process)) {
        return;
    }
    const std::optional<Reaction> reaction = reactions.next();
    if (!reaction) {
        return;
    }
    for (const Reaction::Part& part : reaction->parts()) {
        const auto act = [this, process, acts = part.acts] {
            if (!isAlive(process)) {
                return;
            }
            const Meanwhile acting(
                acting_, process != nullptr ? std::optional(process->application.processIdentifier) : std::nullopt);
            for (const Reaction::Act& each : acts) {
                each(world_);
            }
        };
        world_.scheduler.actAfter(part.delay, act);
    }
}

}  // namespace lomaris::simulated
