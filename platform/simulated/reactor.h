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

/// Reactions of which the first stimulus meets the first, the second one the second, ..., and the last one stays.
class ReactionsInTurn {
public:
    ReactionsInTurn() = default;
    explicit ReactionsInTurn(std::vector<Reaction> reactions) : reactions_(std::move(reactions)) {}

    /// The reaction whose turn it is, or nothing where there is none at all. Each asking counts.
    [[nodiscard]] std::optional<Reaction> next();

private:
    std::vector<Reaction> reactions_;
    std::size_t turn_ = 0;
};

/// What an application does at one key stroke.
struct KeyReactions {
    KeyStroke keyStroke;
    ReactionsInTurn reactions;
};

/// Brings key strokes and actions to the applications, which react in their own time.
class Reactor {
public:
    explicit Reactor(World& world) : world_(world) {}

    /// A key stroke goes to a process, or to the application in front where none is given.
    void pressKey(KeyStroke keyStroke, std::optional<ProcessIdentifier> processIdentifier);
    /// An action of an element is performed; the result is its code.
    [[nodiscard]] AXError perform(ElementState& element, std::string_view action);
    /// An attribute of an element is set; the result is its code.
    [[nodiscard]] AXError set(ElementState& element, std::string_view attribute, const AttributeValue& value);

    /// The application whose reaction runs now; nullopt if none does.
    [[nodiscard]] std::optional<ProcessIdentifier> acting() const { return acting_; }

private:
    /// `process` is null for the system-wide element.
    void react(const ProcessState* process, ReactionsInTurn& reactions);

    World& world_;
    std::optional<ProcessIdentifier> acting_;
};

}  // namespace lomaris::simulated
