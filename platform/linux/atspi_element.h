#pragma once

#include "platform/accessibility.h"
#include "platform/linux/bus_message.h"

#include <optional>
#include <variant>

namespace lomaris {

/// What an element of this platform stands for. The element of an application carries only the process identifier: it
/// is made without a look at the bus, and is never the same element as the root object that the application shows
/// there.
struct SystemWide {
    friend bool operator==(SystemWide, SystemWide) { return true; }
};
struct ApplicationOf {
    ProcessIdentifier processIdentifier = 0;

    friend bool operator==(ApplicationOf, ApplicationOf) = default;
};
/// A value that was taken for an element and is none.
struct NoElement {
    friend bool operator==(NoElement, NoElement) { return true; }
};
using ElementTarget = std::variant<ObjectReference, ApplicationOf, SystemWide, NoElement>;

[[nodiscard]] Element makeElement(ElementTarget target);

/// `element` must come from this platform.
[[nodiscard]] const ElementTarget& targetOf(const Element& element);

}  // namespace lomaris
