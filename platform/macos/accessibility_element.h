#pragma once

#include "platform/element.h"
#include "platform/macos/core_foundation.h"

#include <ApplicationServices/ApplicationServices.h>

namespace lomaris::macos {

/// An element that shares `value`, whatever it is: most are elements of the platform, but a value that is taken as one
/// unchecked, or none at all, is held as well. Equality is that of Core Foundation. Any thread.
[[nodiscard]] Element makeElement(CFOwned<CFTypeRef> value);

/// The platform's element behind `element`, borrowed from it, or null where it holds something else: the platform's
/// calls may end the process when they are handed anything but an element. `element` comes from this platform.
[[nodiscard]] AXUIElementRef axElementOf(const Element& element);

}  // namespace lomaris::macos
