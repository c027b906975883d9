#pragma once

#include "accessibility/model/context_limits.h"

#include <cstdint>

namespace lomaris {

/// The reason for reading a selection.
enum class SelectionPurpose : std::uint8_t {
    /// A plain read. Does not reject any application early, and does not search for the Copy command after a failure.
    standard = 0,
    /// The user invoked the assistant by its shortcut. Rejects file managers; copies the selection of a terminal that
    /// reports no range.
    shortcut = 1,
    /// The repeated read of a guarded replacement.
    guardedReplacement = 2,
};

/// The options of a read, independent of its purpose.
struct SelectionReadOptions {
    ContextLimits limits{};
    /// Whether the clipboard may be used.
    bool allowClipboardFallback = false;
};

}  // namespace lomaris
