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

/// What an `Element` denotes; `noElement` is a value that was copied as an element but is none.
enum class ReferenceKind { systemWide, root, member, noElement };

/// The simulated desktop's data behind an `Element`. A root element is identified by its process alone, so it exists
/// before the application runs and after it quit.
class SimulatedReference final : public ElementReference {
public:
    SimulatedReference(ReferenceKind kind, ProcessIdentifier process, std::uint32_t number, ElementState* state)
        : kind_(kind), process_(process), number_(number), state_(state) {}

    [[nodiscard]] ReferenceKind kind() const { return kind_; }
    [[nodiscard]] ProcessIdentifier process() const { return process_; }
    /// Number of a member, from 1, among all elements that its process ever had; 0 for other kinds.
    [[nodiscard]] std::uint32_t number() const { return number_; }
    /// The state of a member or of the system-wide element; null for other kinds.
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

/// How setting one attribute is scripted.
struct SetScript {
    AXError answer = AXError::success;
    SetEffect effect = SetEffect::none;
    ReactionsInTurn reactions;
};

/// The script of one attribute.
struct AttributeScript {
    std::string name;
    /// Empty if reads are not scripted.
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

/// Text and selection of a text area. The selection is inside the text.
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

    /// Null if nothing is scripted for the attribute.
    [[nodiscard]] AttributeScript* find(std::string_view attribute);
    [[nodiscard]] AttributeScript& script(std::string_view attribute);
    /// Null if the action is not scripted.
    [[nodiscard]] ActionScript* findAction(std::string_view action);

    // What the boundary calls do. Each read counts for scripts with several results.
    [[nodiscard]] AttributeAnswer read(std::string_view attribute);
    [[nodiscard]] SettableAnswer isSettable(std::string_view attribute);
    [[nodiscard]] AXError set(std::string_view attribute, const AttributeValue& value);

private:
    /// Sets an attribute of the text of a text area; for any other attribute, makes later reads return the value.
    AXError write(AttributeScript* script, std::string_view attribute, const AttributeValue& value);
};

}  // namespace lomaris::simulated
