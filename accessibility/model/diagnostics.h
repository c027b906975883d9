#pragma once

#include "accessibility/model/selection.h"
#include "platform/accessibility.h"
#include "text/text.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace lomaris {

/// The selection attributes of one accessibility element. Contains the lengths of the user's texts, not the texts.
struct AccessibilityNodeDiagnostic {
    /// The position in the tree: the index of the scan root, then the index of each element among its siblings down to
    /// this one, joined by "." and counted from 0 ("0.3.1").
    Text path;
    /// 0 for a scan root.
    std::int64_t depth = 0;
    std::optional<Text> role;
    std::optional<Text> subrole;
    std::optional<Text> identifier;
    /// True if the element reports that it has the keyboard focus.
    bool focused = false;
    /// The AXError code of reading "AXSelectedText". 0 means success, even if the value is not a text.
    std::int32_t selectedTextStatus = 0;
    /// In UTF-16 units. Absent if "AXSelectedText" was not read or is not a text.
    std::optional<std::int64_t> selectedTextLength;
    std::optional<SelectionRangePayload> selectedRange;
    /// In UTF-16 units. Absent if "AXValue" was not read or is not a text.
    std::optional<std::int64_t> valueLength;
    /// True if "AXSelectedText" can be set. False if that could not be determined.
    bool selectedTextSettable = false;
    /// The number of elements in "AXChildren".
    std::int64_t childCount = 0;

    friend bool operator==(const AccessibilityNodeDiagnostic&, const AccessibilityNodeDiagnostic&) = default;
};

/// A filtered view of the front application's element tree, to find out why a selection can or cannot be read.
struct AccessibilityDiagnosticPayload {
    /// Localized name of the application; absent if it has none.
    std::optional<Text> applicationName;
    std::optional<Text> bundleIdentifier;
    ProcessIdentifier processIdentifier = 0;
    /// The number of examined elements, relevant or not; at most 3,000.
    std::int64_t scannedNodeCount = 0;
    /// True if the scan stopped before it had examined all elements.
    bool truncated = false;
    /// In the order of examination.
    std::vector<AccessibilityNodeDiagnostic> relevantNodes;

    friend bool operator==(const AccessibilityDiagnosticPayload&, const AccessibilityDiagnosticPayload&) = default;
};

/// A summary of one selection read, without the text, that shows which route works for the application. Lengths are in
/// user-perceived characters, unlike those of the element diagnostics.
struct CompatibilityDiagnosticPayload {
    CompatibilityDiagnosticPayload() = default;
    explicit CompatibilityDiagnosticPayload(const SelectionPayload& selection);

    std::int64_t schemaVersion = 1;
    std::optional<Text> applicationName;
    std::optional<Text> bundleIdentifier;
    /// True if the selected text is not empty.
    bool selectionReadable = false;
    std::int64_t selectionLength = 0;
    /// One of `selection_method`.
    Text selectionMethod;
    /// True if a replacement would be pasted. Always the opposite of `supportsDirectReplacement`, regardless of how the
    /// selection was read.
    bool usesClipboardFallback = false;
    bool supportsDirectReplacement = false;
    std::int64_t contextBeforeLength = 0;
    std::int64_t contextAfterLength = 0;

    friend bool operator==(const CompatibilityDiagnosticPayload&, const CompatibilityDiagnosticPayload&) = default;
};

}  // namespace lomaris
