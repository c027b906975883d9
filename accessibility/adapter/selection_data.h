#pragma once

#include "accessibility/model/outcome.h"
#include "platform/accessibility.h"

#include <optional>

namespace lomaris {

/// The selection of an element. The fields are read one by one, so they may contradict each other.
struct SelectionData {
    /// The selected text; may be empty.
    Text text;
    /// In UTF-16 units; absent if the element reports none.
    std::optional<TextRange> range;
    /// The element's whole text; absent if it has none.
    std::optional<Text> fullText;
};

/// Reads an element's selection. If the selected text is unreadable or empty, takes it from the whole text by the
/// range. Throws `BridgeError::selectedTextUnavailable` with the error code of the selected text; the code is 0 if the
/// value is not a text. Copies three attributes one by one, without a cache. Main thread.
[[nodiscard]] SelectionData readSelectionData(Accessibility& accessibility, const Element& element);

/// As `readSelectionData`, but returns the error.
[[nodiscard]] Outcome<SelectionData> tryReadSelectionData(Accessibility& accessibility, const Element& element);

}  // namespace lomaris
