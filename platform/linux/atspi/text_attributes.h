#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/text_offsets.h"
#include "platform/linux/dbus/bus_connection.h"

#include <optional>

namespace lomaris {

// Each queues the calls that one attribute of a text element takes. `answer` is filled inside the bus's `finish` and
// must live until then. Positions and lengths come out in UTF-16 units, whatever the toolkit counts in; where that
// cannot be told, the answer is a failure rather than a guess.

/// The text of the first selection; empty where nothing is selected.
void queueSelectedText(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);

/// The range of the first selection; where nothing is selected, the empty range at the caret, or no value where there
/// is no caret.
void queueSelectedTextRange(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);

/// The whole text of a text element, or the number of an element that has one.
void queueValue(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);

/// The text of an element, and its first selection or the empty range at the caret, of one moment.
struct TextState {
    ElementText text;
    TextRange selection;
};

/// A state, or the code that says why there is none.
struct TextStateAnswer {
    AXError error = AXError::failure;
    std::optional<TextState> state;
};

/// Asks for the state of a text element. Finishes the bus's calls.
[[nodiscard]] TextStateAnswer readTextState(BusConnection& bus, const ObjectReference& object);

}  // namespace lomaris
