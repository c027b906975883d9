#pragma once

#include "accessibility/model/input_activity.h"
#include "platform/accessibility.h"
#include "platform/attribute_value.h"
#include "text/text.h"

#include <cstdint>
#include <optional>

namespace lomaris {

/// The range of a selection as it leaves the process: position and length in UTF-16 units, as the element reported
/// them.
using SelectionRangePayload = TextRange;

/// How a later replacement must be written.
enum class ReplacementStrategy : std::uint8_t {
    /// Into the element's "AXSelectedText".
    directAccessibility,
    /// By pasting through keyboard and clipboard.
    keyboardClipboard,
};

/// Values of `SelectionPayload::selectionMethod`.
namespace selection_method {
inline constexpr TextView accessibility = u"accessibility";
inline constexpr TextView keyboardClipboardFallback = u"keyboardClipboardFallback";
}  // namespace selection_method

/// What was read of a selection, and what of it leaves the process as JSON. Compared field by field, texts unit by
/// unit.
struct SelectionPayload {
    /// Localized name of the application, absent where it has none.
    std::optional<Text> applicationName;
    std::optional<Text> bundleIdentifier;
    /// Of the element that was read; 0 where asking it failed.
    ProcessIdentifier processIdentifier = 0;
    Text selectedText;
    /// Text just before and just after the selection, at most the caller's limits in UTF-16 units; a cut may leave half
    /// a surrogate pair. Empty where the element's text or range is unknown.
    Text contextBefore;
    Text contextAfter;
    /// Absent where the element reports none, and always on the keyboard route.
    std::optional<SelectionRangePayload> selectedRange;
    /// Sampled when the selection was read.
    InputActivitySnapshot inputActivity;
    /// Whether a replacement may be written straight into the element.
    bool supportsDirectReplacement = false;
    /// One of `selection_method`.
    Text selectionMethod;

    friend bool operator==(const SelectionPayload&, const SelectionPayload&) = default;
};

/// A selection inside the process: the payload together with the live element, which it retains.
struct SelectionSnapshot {
    Element element;
    SelectionPayload payload;
    ReplacementStrategy replacementStrategy = ReplacementStrategy::keyboardClipboard;
};

}  // namespace lomaris
