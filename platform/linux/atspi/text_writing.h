#pragma once

#include "platform/ax_error.h"
#include "platform/linux/dbus/bus_connection.h"
#include "text/text.h"

namespace lomaris {

/// Replaces the selected text of an element, or inserts at the caret if nothing is selected. Calls `bus.finish`, and
/// blocks until the change is verified or the attempt fails.
///
/// Applications report success whether or not they made a change. Each step (delete, insert) is therefore verified by
/// reading the text, for up to about 160 ms while it is unchanged. If the text differs from the expected one, the
/// result is `failure`, and the deleted text is inserted again if the new text did not arrive. All kinds of line breaks
/// compare equal, because toolkits convert them.
///
/// Returns `failure`, without a change, if the selection contains an embedded object (U+FFFC) or splits a surrogate
/// pair, as neither could be restored; `illegalArgument` if `text` contains U+0000, which D-Bus cannot transport. An
/// unpaired surrogate in `text` arrives as U+FFFD. On success the caret is after the new text if the toolkit allows it
/// to be set. Main thread.
[[nodiscard]] AXError writeSelectedText(BusConnection& bus, const ObjectReference& object, TextView text);

}  // namespace lomaris
