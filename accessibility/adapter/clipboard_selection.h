#pragma once

#include "accessibility/adapter/copy_command.h"
#include "accessibility/adapter/selection_purpose.h"
#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/selection.h"
#include "platform/platform.h"

#include <optional>

namespace lomaris {

/// How persistently the clipboard route reads for a purpose.
[[nodiscard]] ClipboardSelectionReadPolicy readPolicyFor(SelectionPurpose purpose);

/// Looks for the application's Copy command, and once more 0.05 s later where there was none: menus may still be
/// filling.
[[nodiscard]] std::optional<CopyCommand> findCopyCommandWithRetry(Platform& platform,
                                                                  const std::optional<RunningApplication>& application);

/// Reads the selection of `application`, or of the one in front where it is absent, through keyboard and clipboard.
/// `allowed`: whether this route may be used at all. `copyCommand` is pressed where it is given. The snapshot's element
/// is the application's; there is no range and no context. Main thread; synchronous.
///
/// Throws `BridgeError`: `clipboardFallbackDisabled`, `accessibilityPermissionRequired`,
/// `focusedApplicationUnavailable`, and those of `KeyboardClipboardFallback::readSelectedText`.
[[nodiscard]] SelectionSnapshot readSelectionWithKeyboardClipboardFallback(
    Platform& platform, KeyboardClipboardFallback& fallback, std::optional<RunningApplication> application,
    bool allowed, ClipboardSelectionReadPolicy policy, const std::optional<CopyCommand>& copyCommand);

}  // namespace lomaris
