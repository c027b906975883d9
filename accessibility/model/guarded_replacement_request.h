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
    /// The range that the selection must still have, in UTF-16 units. If absent, the input activity is compared
    /// instead, or only the text if the selection has to be copied.
    std::optional<SelectionRangePayload> expectedSelectedRange;
    /// The counters at the time of the earlier read. Any input after them refuses the replacement if no range is
    /// compared.
    InputActivitySnapshot expectedInputActivity;
    /// The text to write.
    Text replacementText;

    friend bool operator==(const GuardedReplacementRequest&, const GuardedReplacementRequest&) = default;
};

}  // namespace lomaris
