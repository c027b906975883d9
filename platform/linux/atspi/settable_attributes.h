#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/object_source.h"

#include <string_view>

namespace lomaris {

/// Queues the calls that determine whether one attribute of an object can be set. `answer` is set at once or inside the
/// bus's `finish`, and must outlive it. Sets `attributeUnsupported` if `isObjectAttribute` is false.
void queueSettable(const ObjectSource& source, const ObjectReference& object, std::string_view attribute,
                   SettableAnswer& answer);

}  // namespace lomaris
