#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/text_offsets.h"
#include "platform/linux/dbus/bus_connection.h"

#include <optional>

namespace lomaris {

// Each of the first three functions queues the calls for one attribute of a text element. `answer` is set inside
// `bus.finish` and must outlive it. Positions and lengths are in UTF-16 units, whichever unit the toolkit counts in; if
// that unit cannot be determined, the result is `failure`.

/// The text of the first selection; empty if nothing is selected.
void queueSelectedText(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);

/// The range of the first selection. If nothing is selected: the empty range at the caret, or `noValue` without a
/// caret.
void queueSelectedTextRange(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);

/// The whole text of an element with `Text`, otherwise the number (`CurrentValue`) of an element with `Value`.
void queueValue(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer);

/// The text of an element and its first selection, or the empty range at the caret if nothing is selected.
struct TextState {
    ElementText text;
    TextRange selection;
};

/// The result of reading a state: `success` and a state, or the reason and no state.
struct TextStateAnswer {
    AXError error = AXError::failure;
    std::optional<TextState> state;
};

/// Reads the state of a text element with calls that are sent together. Calls `bus.finish`.
[[nodiscard]] TextStateAnswer readTextState(BusConnection& bus, const ObjectReference& object);

}  // namespace lomaris
