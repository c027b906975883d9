#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_message.h"

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
/// A part of a menu bar. Between a title in the bar and the items below it the logic expects a menu of its own, which
/// most toolkits do not show: the menu is then the same object as the title, seen from below.
enum class MenuLevel { bar, barItem, menu };
struct MenuPart {
    MenuLevel level = MenuLevel::bar;
    ObjectReference object;

    friend bool operator==(const MenuPart&, const MenuPart&) = default;
};
using ElementTarget = std::variant<ObjectReference, ApplicationOf, SystemWide, NoElement, MenuPart>;

[[nodiscard]] Element makeElement(ElementTarget target);

/// `element` must come from this platform.
[[nodiscard]] const ElementTarget& targetOf(const Element& element);

}  // namespace lomaris
