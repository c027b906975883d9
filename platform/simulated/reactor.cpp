#include "platform/simulated/reactor.h"

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
    // The reaction may script the action anew.
    const AXError answer = script->answer;
    react(element.process, script->reactions);
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
    const auto act = [&world = world_, process, act = reaction->act()] {
        if (isAlive(process)) {
            act(world);
        }
    };
    if (reaction->delay() > Duration::zero()) {
        world_.scheduler.at(world_.scheduler.momentAfter(reaction->delay()), act);
    } else {
        world_.scheduler.act(act);
    }
}

}  // namespace lomaris::simulated
