#pragma once

#include "platform/element.h"
#include "platform/macos/core_foundation.h"

#include <ApplicationServices/ApplicationServices.h>

namespace lomaris::macos {

/// Creates an element that shares `value`. Usually an AXUIElement, but `copyElementAttribute` may return a value of
/// another kind, and `value` may be null. Equality is that of Core Foundation. Any thread.
[[nodiscard]] Element makeElement(CFOwned<CFTypeRef> value);

/// The AXUIElement behind `element`, borrowed from it; null if it holds something else. The check is necessary because
/// the platform's calls may crash on any other object. `element` must be from this platform.
[[nodiscard]] AXUIElementRef axElementOf(const Element& element);

}  // namespace lomaris::macos
