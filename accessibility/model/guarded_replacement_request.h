#pragma once

#include "accessibility/model/selection.h"

#include <optional>

namespace lomaris {

/// A wish to replace a selection only if it is still the one that an earlier read reported. A caller fills the
/// expectations from the `SelectionPayload` of that read. Compared field by field, texts unit by unit.
struct GuardedReplacementRequest {
    /// The text that must still be selected.
    Text expectedText;
    /// The process that must still be in front.
    ProcessIdentifier expectedProcessIdentifier = 0;
    /// The bundle identifier that the selection must still report. Absent means that it must report none.
    std::optional<Text> expectedBundleIdentifier;
    /// The range that the selection must still have, in UTF-16 units. Where it is absent, the input activity decides,
    /// unless the selection has to be copied: then its text is all that is compared.
    std::optional<SelectionRangePayload> expectedSelectedRange;
    /// The counters at the earlier read, or at the moment from which on no input may have come.
    InputActivitySnapshot expectedInputActivity;
    /// The text to write.
    Text replacementText;

    friend bool operator==(const GuardedReplacementRequest&, const GuardedReplacementRequest&) = default;
};

}  // namespace lomaris
