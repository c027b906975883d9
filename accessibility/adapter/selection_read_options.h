#pragma once

#include "accessibility/model/context_limits.h"

namespace lomaris {

/// The options of a read, independent of its purpose.
struct SelectionReadOptions {
    ContextLimits limits{};
    /// Whether the clipboard may be used.
    bool allowClipboardFallback = false;
};

}  // namespace lomaris
