#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/window_raising.h"
#include "platform/workspace.h"

#include <memory>

namespace lomaris {

/// Accessibility that recognizes terminals, which have no role of their own on the platform the tool is written for.
class TerminalAwareAccessibility : public Accessibility {
public:
    /// Whether the focused element of the process has the AT-SPI role terminal. False if the process shows nothing on
    /// the bus, or if it does not reply in time. Main thread.
    [[nodiscard]] virtual bool isTerminalFocused(ProcessIdentifier processIdentifier) = 0;
};

/// The accessibility service of a Linux desktop: AT-SPI objects over D-Bus, shown under the names and numbers that the
/// logic uses (docs/linux.md has the tables). Connects to nothing before its first use. `workspace` tells the
/// application in front and must outlive the result; `raiser` activates windows, and is null if nothing can.
[[nodiscard]] std::unique_ptr<TerminalAwareAccessibility> makeLinuxAccessibility(Workspace& workspace,
                                                                                 WindowRaiser raiser = nullptr);

}  // namespace lomaris
