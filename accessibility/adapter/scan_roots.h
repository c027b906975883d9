#pragma once

#include "platform/accessibility.h"

#include <vector>

namespace lomaris {

/// Returns the elements at which a search of an application starts: its focused window, otherwise all its windows in
/// their order, otherwise the application element. Never empty. Main thread.
[[nodiscard]] std::vector<Element> scanRoots(Accessibility& accessibility, const Element& application);

}  // namespace lomaris
