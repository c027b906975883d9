#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/reaction.h"

#include <string_view>
#include <vector>

namespace lomaris {

namespace simulated {
struct ElementState;
}  // namespace simulated

/// An answer with a value, for `SimulatedElement::answersInTurn`.
[[nodiscard]] AttributeAnswer answer(AttributeValue value);

/// An answer with an error code and no value.
[[nodiscard]] AttributeAnswer answer(AXError error);

/// What a scripted set does to what is read.
enum class SetEffect {
    none,
    /// What was set is read from then on; a text area takes it as if nothing were scripted.
    written,
};

/// The script of one element: what it answers. A handle that may be copied; valid as long as its desktop. What was
/// scripted last holds. Nothing here is journalled.
///
/// Without a script an attribute answers `attributeUnsupported` to a read, to a set and to the settable question, and
/// an action answers `actionUnsupported`. An attribute that answers reads, but was not made settable, is not settable
/// and refuses a set with `attributeUnsupported`.
class SimulatedElement {
public:
    explicit SimulatedElement(simulated::ElementState& state) : state_(&state) {}

    /// The element as the boundary hands it out.
    [[nodiscard]] Element element() const;

    /// From now on, each read of the attribute answers this.
    SimulatedElement& answers(std::string_view attribute, AttributeValue value);
    SimulatedElement& answers(std::string_view attribute, AXError error);
    SimulatedElement& answers(std::string_view attribute, AttributeAnswer scripted);

    /// The first read from now on answers the first of these, the second read the second, ...; the last one stays. Each
    /// read counts, whether single or in a batch. None at all is as if the attribute were never scripted.
    SimulatedElement& answersInTurn(std::string_view attribute, std::vector<AttributeAnswer> scripted);

    /// What the settable question answers. Where it answers yes and no answer to a set is scripted, a set succeeds and
    /// what was set is read from then on.
    SimulatedElement& answersSettable(std::string_view attribute, SettableAnswer scripted);

    /// Each set of the attribute answers this code and changes nothing, success included.
    SimulatedElement& answersSet(std::string_view attribute, AXError error);

    /// Each set of the attribute has this effect, makes the application react so (`onActionInTurn` says how) and
    /// answers this code.
    SimulatedElement& onSetInTurn(std::string_view attribute, SetEffect effect, std::vector<Reaction> reactions,
                                  AXError error = AXError::success);

    /// Performing the action answers this code and does nothing else.
    SimulatedElement& answersAction(std::string_view action, AXError error);

    /// Performing the action makes the application react so, and answers this code.
    SimulatedElement& onAction(std::string_view action, Reaction reaction, AXError error = AXError::success);

    /// The first time from now on it reacts in the first of these ways, the second time in the second, ...; the last
    /// one stays.
    SimulatedElement& onActionInTurn(std::string_view action, std::vector<Reaction> reactions,
                                     AXError error = AXError::success);

    /// Asking for the process identifier fails from now on, or no longer does.
    SimulatedElement& processIdentifierFails(bool fails = true);

    /// What stands behind the handle, for the desktop itself.
    [[nodiscard]] simulated::ElementState& state() const { return *state_; }

protected:
    simulated::ElementState* state_;
};

/// A text area that behaves: it answers "AXRole", "AXValue", "AXSelectedText" and "AXSelectedTextRange", and the last
/// three can be set. Setting the selected text replaces the selection and leaves the insertion point behind what was
/// written; setting the value leaves it at the end; a range outside of the text and a value of the wrong kind are
/// refused with `illegalArgument`. A script takes the place of this behaviour, apart for reading, the settable question
/// and setting: an attribute whose reads are scripted can still be set.
class SimulatedTextElement : public SimulatedElement {
public:
    using SimulatedElement::SimulatedElement;

    [[nodiscard]] const Text& text() const;
    [[nodiscard]] TextRange selection() const;

    /// The user selects a range, which must lie inside of the text.
    SimulatedTextElement& select(TextRange range);

    /// The user replaces the whole text and selects a range of it.
    SimulatedTextElement& setText(Text text, TextRange selection);
};

}  // namespace lomaris
