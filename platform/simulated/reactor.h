#pragma once

#include "platform/accessibility.h"
#include "platform/event_services.h"
#include "platform/simulated/reaction.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::simulated {

struct ElementState;
struct ProcessState;
struct World;

/// A list of reactions: each stimulus gets the next one, and all later stimuli get the last one.
class ReactionsInTurn {
public:
    ReactionsInTurn() = default;
    explicit ReactionsInTurn(std::vector<Reaction> reactions) : reactions_(std::move(reactions)) {}

    /// Returns the current reaction and moves on to the next; nullopt if the list is empty.
    [[nodiscard]] std::optional<Reaction> next();

private:
    std::vector<Reaction> reactions_;
    std::size_t turn_ = 0;
};

/// What an application does when it receives one key stroke.
struct KeyReactions {
    KeyStroke keyStroke;
    ReactionsInTurn reactions;
};

/// Delivers key strokes and actions to the applications, which react in their own time.
class Reactor {
public:
    explicit Reactor(World& world) : world_(world) {}

    /// Delivers a key stroke to a process, or to the frontmost application if none is given.
    void pressKey(KeyStroke keyStroke, std::optional<ProcessIdentifier> processIdentifier);
    /// Performs an action of an element and returns the result code.
    [[nodiscard]] AXError perform(ElementState& element, std::string_view action);
    /// Sets an attribute of an element and returns the result code.
    [[nodiscard]] AXError set(ElementState& element, std::string_view attribute, const AttributeValue& value);

    /// The application whose reaction runs now; nullopt if there is none.
    [[nodiscard]] std::optional<ProcessIdentifier> acting() const { return acting_; }

private:
    /// `process` is null for the system-wide element.
    void react(const ProcessState* process, ReactionsInTurn& reactions);

    World& world_;
    std::optional<ProcessIdentifier> acting_;
};

}  // namespace lomaris::simulated
