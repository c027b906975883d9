#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/reactor.h"
#include "platform/simulated/simulated_element.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::simulated {

struct ElementState;
struct ProcessState;

enum class ReferenceKind { systemWide, root, member, noElement };

/// What stands behind an `Element` of the simulated desktop. The root of an application is named by its process alone,
/// so that it can be asked for before the application runs and after it quit.
class SimulatedReference final : public ElementReference {
public:
    SimulatedReference(ReferenceKind kind, ProcessIdentifier process, std::uint32_t number, ElementState* state)
        : kind_(kind), process_(process), number_(number), state_(state) {}

    [[nodiscard]] ReferenceKind kind() const { return kind_; }
    [[nodiscard]] ProcessIdentifier process() const { return process_; }
    /// Number of a member among the elements that ever were of its process, from 1; 0 for others.
    [[nodiscard]] std::uint32_t number() const { return number_; }
    /// The state of a member or of the system-wide element; null for others.
    [[nodiscard]] ElementState* state() const { return state_; }

    [[nodiscard]] bool isSameElement(const ElementReference& other) const override;

private:
    ReferenceKind kind_;
    ProcessIdentifier process_;
    std::uint32_t number_;
    ElementState* state_;
};

[[nodiscard]] const SimulatedReference& referenceOf(const Element& element);
[[nodiscard]] Element makeElement(ReferenceKind kind, ProcessIdentifier process, std::uint32_t number,
                                  ElementState* state);

/// The script of the sets of one attribute.
struct SetScript {
    AXError answer = AXError::success;
    SetEffect effect = SetEffect::none;
    ReactionsInTurn reactions;
};

/// The script of one attribute.
struct AttributeScript {
    std::string name;
    /// Empty where reads are not scripted.
    std::vector<AttributeAnswer> answers;
    std::size_t reads = 0;
    std::optional<SettableAnswer> settable;
    std::optional<SetScript> set;
};

/// The script of one action.
struct ActionScript {
    std::string name;
    AXError answer = AXError::success;
    ReactionsInTurn reactions;
};

/// What a text area holds. The selection lies inside of the text.
struct TextState {
    Text text;
    TextRange selection;
};

/// One element: its script and, for a text area, its text.
struct ElementState {
    ElementState(ReferenceKind kind, ProcessState* owner, ProcessIdentifier processIdentifier, std::uint32_t number)
        : process(owner), element(makeElement(kind, processIdentifier, number, this)) {}
    ElementState(const ElementState&) = delete;
    ElementState& operator=(const ElementState&) = delete;

    /// Null for the system-wide element.
    ProcessState* process;
    Element element;
    std::vector<AttributeScript> attributes;
    std::vector<ActionScript> actions;
    std::optional<TextState> text;
    bool processIdentifierFails = false;

    /// Null where nothing of the attribute is scripted.
    [[nodiscard]] AttributeScript* find(std::string_view attribute);
    [[nodiscard]] AttributeScript& script(std::string_view attribute);
    /// Null where the action is not scripted.
    [[nodiscard]] ActionScript* findAction(std::string_view action);

    // What the element does; each read counts.
    [[nodiscard]] AttributeAnswer read(std::string_view attribute);
    [[nodiscard]] SettableAnswer isSettable(std::string_view attribute);
    [[nodiscard]] AXError set(std::string_view attribute, const AttributeValue& value);

private:
    /// Takes the value, as a text area does or to be read from then on.
    AXError write(AttributeScript* script, std::string_view attribute, const AttributeValue& value);
};

}  // namespace lomaris::simulated
