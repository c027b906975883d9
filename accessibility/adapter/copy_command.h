#pragma once

#include "platform/accessibility.h"
#include "platform/workspace.h"

#include <optional>

namespace lomaris {

/// The Copy menu item of an application.
struct CopyCommand {
    Element element;
    /// Absent if the item does not report its state.
    std::optional<bool> isEnabled;
};

/// Searches the application's menu bar for the item bound to Command+C without other modifiers: first the menus titled
/// "Edit", then the others, each in menu-bar order. Does not search submenus. Also finds a disabled item. Returns
/// nullopt if there is no application or no such item. Never throws. Main thread.
[[nodiscard]] std::optional<CopyCommand> findCopyCommand(Accessibility& accessibility,
                                                         const std::optional<RunningApplication>& application);

}  // namespace lomaris
