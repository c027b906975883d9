#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/reaction.h"

#include <string_view>
#include <vector>

namespace lomaris {

namespace simulated {
struct ElementState;
}  // namespace simulated

/// A success code with a value, for `SimulatedElement::answersInTurn`.
[[nodiscard]] AttributeAnswer answer(AttributeValue value);

/// An error code without a value.
[[nodiscard]] AttributeAnswer answer(AXError error);

/// What a scripted set does to the value that is read.
enum class SetEffect {
    none,
    /// Later reads return the value that was set; a text area handles it as if nothing were scripted.
    written,
};

/// The script of one element: the results of operations on it. A copyable handle, valid as long as the desktop. A later
/// script replaces an earlier one. Nothing here is recorded in the journal.
///
/// Without a script, reading an attribute, setting it and `isAttributeSettable` return `attributeUnsupported`, and
/// performing an action returns `actionUnsupported`. An attribute with scripted reads that was not made settable is not
/// settable, and setting it returns `attributeUnsupported`.
class SimulatedElement {
public:
    explicit SimulatedElement(simulated::ElementState& state) : state_(&state) {}

    /// The element as the boundary returns it.
    [[nodiscard]] Element element() const;

    /// Sets the result of every read of the attribute from now on.
    SimulatedElement& answers(std::string_view attribute, AttributeValue value);
    SimulatedElement& answers(std::string_view attribute, AXError error);
    SimulatedElement& answers(std::string_view attribute, AttributeAnswer scripted);

    /// Sets the results of the reads from now on, one after the other; all later reads return the last. Each read
    /// counts, single or in a batch. An empty list removes the script of the reads.
    SimulatedElement& answersInTurn(std::string_view attribute, std::vector<AttributeAnswer> scripted);

    /// Sets the result of `isAttributeSettable`. If it is true and setting the attribute is not scripted, setting it
    /// succeeds and later reads return the value that was set.
    SimulatedElement& answersSettable(std::string_view attribute, SettableAnswer scripted);

    /// Setting the attribute returns this code and changes nothing, even if the code is a success.
    SimulatedElement& answersSet(std::string_view attribute, AXError error);

    /// Setting the attribute has this effect, causes the next reaction of the list (see `onActionInTurn`) and returns
    /// this code.
    SimulatedElement& onSetInTurn(std::string_view attribute, SetEffect effect, std::vector<Reaction> reactions,
                                  AXError error = AXError::success);

    /// Performing the action returns this code and has no other effect.
    SimulatedElement& answersAction(std::string_view action, AXError error);

    /// Performing the action causes this reaction and returns this code.
    SimulatedElement& onAction(std::string_view action, Reaction reaction, AXError error = AXError::success);

    /// Performing the action causes the next reaction of the list and returns this code; all later times cause the last
    /// reaction.
    SimulatedElement& onActionInTurn(std::string_view action, std::vector<Reaction> reactions,
                                     AXError error = AXError::success);

    /// Sets whether reading the process identifier of the element fails from now on.
    SimulatedElement& processIdentifierFails(bool fails = true);

    /// The state behind the handle, for use by the desktop itself.
    [[nodiscard]] simulated::ElementState& state() const { return *state_; }

protected:
    simulated::ElementState* state_;
};

/// A text area with working text and selection: "AXRole", "AXValue", "AXSelectedText" and "AXSelectedTextRange" can be
/// read, and the last three can be set. Setting the selected text replaces the selection and places the insertion point
/// after the new text; setting the value places it at the end. A range outside the text and a value of the wrong kind
/// are refused with `illegalArgument`. A script replaces this behaviour separately for reading, setting and
/// `isAttributeSettable`: an attribute with scripted reads can still be set.
class SimulatedTextElement : public SimulatedElement {
public:
    using SimulatedElement::SimulatedElement;

    [[nodiscard]] const Text& text() const;
    [[nodiscard]] TextRange selection() const;

    /// The user selects a range, which must be inside the text.
    SimulatedTextElement& select(TextRange range);

    /// The user replaces the whole text and selects a range of it.
    SimulatedTextElement& setText(Text text, TextRange selection);
};

}  // namespace lomaris
