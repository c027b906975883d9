#pragma once

#include "platform/ax_error.h"
#include "platform/linux/dbus/bus_connection.h"
#include "text/text.h"

namespace lomaris {

/// Replaces the selected text of an element, or inserts at its caret where nothing is selected, and answers the result
/// code. Finishes the bus's calls.
///
/// Applications answer that a change was made whether it was or not, so each step counts only once the text has been
/// read back as it must stand: anything else is a `failure`. A text that was taken away is put back where the new one
/// does not arrive. A selection that holds an object (U+FFFC) is left alone, as it could not be put back. Line breaks
/// count as the same whichever way they are written, because toolkits turn them into their own. Half of a surrogate
/// pair cannot travel and arrives as U+FFFD; a zero character cannot travel at all and is an `illegalArgument`.
///
/// Behind a success the caret stands after the new text, in toolkits that let it be set.
[[nodiscard]] AXError writeSelectedText(BusConnection& bus, const ObjectReference& object, TextView text);

}  // namespace lomaris
