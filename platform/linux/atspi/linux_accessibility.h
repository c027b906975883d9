#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/window_raising.h"
#include "platform/workspace.h"

#include <memory>

namespace lomaris {

/// An accessibility service that also recognizes terminals, which by the attributes of `Accessibility` look like any
/// other text area.
class TerminalAwareAccessibility : public Accessibility {
public:
    /// True if the focused element of the process has the AT-SPI role terminal. False if the process is not on the
    /// accessibility bus or does not reply in time. Main thread.
    [[nodiscard]] virtual bool isTerminalFocused(ProcessIdentifier processIdentifier) = 0;
};

/// Creates the accessibility service of a Linux desktop.
///
/// This folder implements `Accessibility` with AT-SPI: objects on the accessibility bus, presented with the attribute
/// names, roles and result codes of the portable code (docs/linux.md has the tables). `native_platform.cpp` is its only
/// user. It may use `dbus/` and `process/`, but not X11: raising a window is passed in as `raiser`.
///
/// Invariants:
/// 1. Nothing connects to a bus before the first use.
/// 2. Every request has the timeout of `BusConnection`. A service that is not reached is `apiDisabled`.
/// 3. Positions and lengths are in UTF-16 units, whichever unit the toolkit counts in.
/// 4. Every operation on a single element reads from the application. Only batches (`copyAttributes`,
///    `areAttributesSettable`) use snapshots, which are at most 100 ms old (`object_snapshot.h`).
///
/// `workspace` provides the front application and must outlive the result. If `raiser` is null, no window can be
/// raised. Main thread only.
[[nodiscard]] std::unique_ptr<TerminalAwareAccessibility> makeLinuxAccessibility(Workspace& workspace,
                                                                                 WindowRaiser raiser = nullptr);

}  // namespace lomaris
