#pragma once

#include "platform/accessibility.h"

#include <vector>

namespace lomaris {

/// Where a walk over an application starts: its focused window, or else all its windows in their order, or else the
/// application element itself. Never empty. Main thread.
[[nodiscard]] std::vector<Element> scanRoots(Accessibility& accessibility, const Element& application);

}  // namespace lomaris
