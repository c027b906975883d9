#pragma once

#include "platform/accessibility.h"

#include <optional>

namespace lomaris {

/// What an element says of its selection. The three may disagree: each was read on its own.
struct SelectionData {
    /// The selected text; may be empty.
    Text text;
    /// In UTF-16 units, absent where the element reports none.
    std::optional<TextRange> range;
    /// The element's whole text, absent where it has none.
    std::optional<Text> fullText;
};

/// Reads an element's selection; where the selected text itself is unreadable or empty, it is cut out of the whole
/// text. Throws `BridgeError::selectedTextUnavailable` with the code of the copy, 0 where that succeeded with a value
/// that is no text. Main thread; three crossings into the target application, always fresh.
[[nodiscard]] SelectionData readSelectionData(Accessibility& accessibility, const Element& element);

}  // namespace lomaris
