#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/object_source.h"

#include <string_view>

namespace lomaris {

/// Queues the calls that it takes to tell whether one attribute of an object can be set. `answer` is filled inside the
/// bus's `finish`, unless at once, and must live until then. Attributes that this platform does not know are
/// `attributeUnsupported`.
void queueSettable(const ObjectSource& source, const ObjectReference& object, std::string_view attribute,
                   SettableAnswer& answer);

}  // namespace lomaris
