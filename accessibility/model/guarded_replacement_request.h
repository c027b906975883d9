#pragma once

#include "accessibility/model/selection.h"

#include <optional>

namespace lomaris {

/// A request to replace a selection, only if it is still the one that an earlier read reported. The caller copies the
/// expectations from the `SelectionPayload` of that read. Compared field by field, texts unit by unit.
struct GuardedReplacementRequest {
    /// The text that must still be selected.
    Text expectedText;
    /// The process that must still be in front.
    ProcessIdentifier expectedProcessIdentifier = 0;
    /// The bundle identifier that the selection must still report. If absent, it must report none.
    std::optional<Text> expectedBundleIdentifier;
    /// The range that the selection must still have, in UTF-16 units. If this or the current range is absent, there
    /// must have been no input instead. If both are absent and the replacement has to be pasted, neither is compared.
    std::optional<SelectionRangePayload> expectedSelectedRange;
    /// The counters after which there must have been no input: those of the earlier read, or sampled later.
    InputActivitySnapshot expectedInputActivity;
    /// The text to write.
    Text replacementText;

    friend bool operator==(const GuardedReplacementRequest&, const GuardedReplacementRequest&) = default;
};

}  // namespace lomaris
