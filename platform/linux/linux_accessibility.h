#pragma once

#include "platform/accessibility.h"
#include "platform/linux/window_raising.h"
#include "platform/workspace.h"

#include <memory>

namespace lomaris {

/// The accessibility service of a Linux desktop: AT-SPI objects over D-Bus, shown under the names and numbers that the
/// logic uses (docs/linux.md has the tables). Connects to nothing before its first use. `workspace` tells the
/// application in front, `raiser` brings windows there, or is null where nothing does; both must outlive the result.
[[nodiscard]] std::unique_ptr<Accessibility> makeLinuxAccessibility(Workspace& workspace,
                                                                    WindowRaiser* raiser = nullptr);

}  // namespace lomaris
