#pragma once

#include "platform/accessibility.h"
#include "platform/workspace.h"

#include <optional>

namespace lomaris {

/// An application's own Copy menu item.
struct CopyCommand {
    Element element;
    /// Absent where the item does not say.
    std::optional<bool> isEnabled;
};

/// Looks through the menu bar of an application for the item bound to plain Command+C: first in menus titled "Edit",
/// then in the others, each in the order of the bar; submenus are not looked into. A disabled item is found too.
/// Nothing where there is no application or no such item. Never throws. Main thread.
[[nodiscard]] std::optional<CopyCommand> findCopyCommand(Accessibility& accessibility,
                                                         const std::optional<RunningApplication>& application);

}  // namespace lomaris
