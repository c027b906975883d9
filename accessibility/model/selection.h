#pragma once

#include "accessibility/model/input_activity.h"
#include "platform/accessibility.h"
#include "platform/attribute_value.h"
#include "text/text.h"

#include <cstdint>
#include <optional>

namespace lomaris {

/// The range of a selection in UTF-16 units, as the element reported it.
using SelectionRangePayload = TextRange;

/// How a later replacement must be written.
enum class ReplacementStrategy : std::uint8_t {
    /// By setting the element's "AXSelectedText".
    directAccessibility,
    /// By pasting through keyboard and clipboard.
    keyboardClipboard,
};

/// The values of `SelectionPayload::selectionMethod`.
namespace selection_method {
inline constexpr TextView accessibility = u"accessibility";
inline constexpr TextView keyboardClipboardFallback = u"keyboardClipboardFallback";
}  // namespace selection_method

/// One selection and its context, as written to JSON. Compared field by field, texts unit by unit.
struct SelectionPayload {
    /// Localized name of the application; absent if it has none.
    std::optional<Text> applicationName;
    std::optional<Text> bundleIdentifier;
    /// The process of the element that was read; 0 if it could not be determined.
    ProcessIdentifier processIdentifier = 0;
    Text selectedText;
    /// The text just before and just after the selection, limited to the caller's number of UTF-16 units; a cut may
    /// leave half a surrogate pair. Empty if the element's text or range is unknown.
    Text contextBefore;
    Text contextAfter;
    /// Absent if the element reports none, and always if the selection was copied.
    std::optional<SelectionRangePayload> selectedRange;
    /// Sampled when the selection was read.
    InputActivitySnapshot inputActivity;
    /// True if a replacement may be written directly into the element.
    bool supportsDirectReplacement = false;
    /// One of `selection_method`.
    Text selectionMethod;

    friend bool operator==(const SelectionPayload&, const SelectionPayload&) = default;
};

/// A selection inside the process: the payload, and the element, which it retains.
struct SelectionSnapshot {
    Element element;
    SelectionPayload payload;
    ReplacementStrategy replacementStrategy = ReplacementStrategy::keyboardClipboard;
};

}  // namespace lomaris
