#pragma once

#include "accessibility/model/selection.h"
#include "platform/accessibility.h"
#include "text/text.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace lomaris {

/// What one accessibility element says about selections. Texts of the user are not kept, only their lengths.
struct AccessibilityNodeDiagnostic {
    /// Where it stands: the index of its scan root and then, each after a ".", the indices among their siblings down to
    /// the element, counted from 0 ("0.3.1").
    Text path;
    /// 0 for a scan root.
    std::int64_t depth = 0;
    std::optional<Text> role;
    std::optional<Text> subrole;
    std::optional<Text> identifier;
    /// Whether the element says that it has the keyboard focus.
    bool focused = false;
    /// The code that reading "AXSelectedText" answered: 0 for success, also where no text came with it.
    std::int32_t selectedTextStatus = 0;
    /// In UTF-16 units; absent where "AXSelectedText" was not read or is no text.
    std::optional<std::int64_t> selectedTextLength;
    std::optional<SelectionRangePayload> selectedRange;
    /// In UTF-16 units; absent where "AXValue" was not read or is no text.
    std::optional<std::int64_t> valueLength;
    /// Whether "AXSelectedText" can be set; no where the element did not say.
    bool selectedTextSettable = false;
    /// The elements in its "AXChildren".
    std::int64_t childCount = 0;

    friend bool operator==(const AccessibilityNodeDiagnostic&, const AccessibilityNodeDiagnostic&) = default;
};

/// A filtered view of the front application's element tree: what can tell why a selection can or cannot be read.
struct AccessibilityDiagnosticPayload {
    /// Localized name of the application, absent where it has none.
    std::optional<Text> applicationName;
    std::optional<Text> bundleIdentifier;
    ProcessIdentifier processIdentifier = 0;
    /// Elements that were examined, relevant or not; at most 3,000.
    std::int64_t scannedNodeCount = 0;
    /// Whether elements were still waiting to be examined when the scan stopped.
    bool truncated = false;
    /// In the order in which they were examined.
    std::vector<AccessibilityNodeDiagnostic> relevantNodes;

    friend bool operator==(const AccessibilityDiagnosticPayload&, const AccessibilityDiagnosticPayload&) = default;
};

/// A summary of one selection read, without its text: which route works for the application. Lengths are
/// user-perceived characters, unlike those of the element diagnostics.
struct CompatibilityDiagnosticPayload {
    CompatibilityDiagnosticPayload() = default;
    explicit CompatibilityDiagnosticPayload(const SelectionPayload& selection);

    std::int64_t schemaVersion = 1;
    std::optional<Text> applicationName;
    std::optional<Text> bundleIdentifier;
    /// Whether the selected text is not empty.
    bool selectionReadable = false;
    std::int64_t selectionLength = 0;
    /// One of `selection_method`.
    Text selectionMethod;
    /// Whether a replacement would be pasted: the opposite of `supportsDirectReplacement`, whichever way the selection
    /// was read.
    bool usesClipboardFallback = false;
    bool supportsDirectReplacement = false;
    std::int64_t contextBeforeLength = 0;
    std::int64_t contextAfterLength = 0;

    friend bool operator==(const CompatibilityDiagnosticPayload&, const CompatibilityDiagnosticPayload&) = default;
};

}  // namespace lomaris
