#pragma once

#include "platform/accessibility.h"
#include "platform/linux/dbus/bus_message.h"

#include <optional>
#include <variant>

namespace lomaris {

/// The system-wide element.
struct SystemWide {
    friend bool operator==(SystemWide, SystemWide) { return true; }
};
/// The element of an application. It has only the process identifier, so that creating it needs no request, and is
/// never equal to the element of the application's root object.
struct ApplicationOf {
    ProcessIdentifier processIdentifier = 0;

    friend bool operator==(ApplicationOf, ApplicationOf) = default;
};
/// The element that represents an attribute value of another type. Every operation on it fails with `invalidUIElement`.
struct NoElement {
    friend bool operator==(NoElement, NoElement) { return true; }
};
/// The role of an object in the tree of a menu bar: the bar, a title in it, or the menu of that title.
enum class MenuLevel { bar, barItem, menu };
/// A part of a menu bar. Callers expect a menu element between a title and its items. Most toolkits have no such
/// object; the title and its menu are then two elements with the same object and different levels.
struct MenuPart {
    MenuLevel level = MenuLevel::bar;
    ObjectReference object;

    friend bool operator==(const MenuPart&, const MenuPart&) = default;
};
/// What an element of this platform refers to; an `ObjectReference` for all but the special cases above. Two elements
/// are the same if their targets are equal.
using ElementTarget = std::variant<ObjectReference, ApplicationOf, SystemWide, NoElement, MenuPart>;

[[nodiscard]] Element makeElement(ElementTarget target);

/// `element` must have been created by this platform. Valid as long as the element.
[[nodiscard]] const ElementTarget& targetOf(const Element& element);

}  // namespace lomaris
