#pragma once

#include "accessibility/adapter/copy_command.h"
#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/outcome.h"
#include "accessibility/model/selection.h"
#include "platform/platform.h"

#include <optional>

namespace lomaris {

/// Finds the application's Copy command. Tries again after 0.05 s if there is none, because menus may still be loading.
[[nodiscard]] std::optional<CopyCommand> findCopyCommandWithRetry(Platform& platform,
                                                                  const std::optional<RunningApplication>& application);

/// Reads the selection of `application`, or of the front application if absent, through keyboard and clipboard.
/// `allowed`: whether the clipboard may be used. `copyCommand`, if present, is pressed before the key is tried. The
/// snapshot's element is the application's; it has no range and no context. Main thread; synchronous.
///
/// Throws `BridgeError`: `clipboardFallbackDisabled`, `accessibilityPermissionRequired`,
/// `focusedApplicationUnavailable`, and the errors of `KeyboardClipboardFallback::readSelectedText`.
[[nodiscard]] SelectionSnapshot readSelectionWithKeyboardClipboardFallback(
    Platform& platform, KeyboardClipboardFallback& fallback, std::optional<RunningApplication> application,
    bool allowed, ClipboardSelectionReadPolicy policy, const std::optional<CopyCommand>& copyCommand);

/// As `readSelectionWithKeyboardClipboardFallback`, but returns the error.
[[nodiscard]] Outcome<SelectionSnapshot> tryReadSelectionWithKeyboardClipboardFallback(
    Platform& platform, KeyboardClipboardFallback& fallback, std::optional<RunningApplication> application,
    bool allowed, ClipboardSelectionReadPolicy policy, const std::optional<CopyCommand>& copyCommand);

}  // namespace lomaris
