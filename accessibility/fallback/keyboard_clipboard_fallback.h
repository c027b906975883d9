#pragma once

#include "accessibility/fallback/clipboard_hold.h"
#include "accessibility/model/outcome.h"
#include "accessibility/model/selection_purpose.h"
#include "platform/platform.h"
#include "text/text.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace lomaris {

/// The number of attempts and the waits of a read through the clipboard, which its purpose determines.
using ClipboardSelectionReadPolicy = SelectionPurpose;

/// Presses the target's Copy menu item. Returns the error if that fails.
using CopyItemPress = std::function<std::optional<BridgeError>()>;

/// Reads and replaces the selection of applications that do not expose it, by making them copy and paste. Saves the
/// user's clipboard first and restores it afterwards. It is also restored if the process is told to terminate before
/// the paste key is posted.
///
/// Only one operation of all processes uses the clipboard at a time: if it is in use, an operation waits for up to 10 s
/// and then fails with nothing changed. An operation after a paste of this object waits until the target has read the
/// text; in the end it restores the contents that the paste saved.
///
/// Main thread. Synchronous, except for the restore after a paste. Borrows the platform, which must outlive this
/// object.
class KeyboardClipboardFallback {
public:
    explicit KeyboardClipboardFallback(Platform& platform) : platform_(platform), hold_(platform) {}

    /// Makes all reads and the paste until the end of the scope one operation: no other operation can use the clipboard
    /// between them. Scopes nest.
    [[nodiscard]] ClipboardHold::Scope operation() { return ClipboardHold::Scope(hold_); }

    /// Makes the target copy and returns the text, which is never empty. `copyCommand`, if not empty, presses the
    /// target's Copy menu item and throws `BridgeError` if that fails; then the key is used. The clipboard is restored
    /// before the function returns or throws. Throws `BridgeError`: `noTextSelected`, `clipboardFallbackFailed`,
    /// `keyboardEventPermissionRequired`.
    [[nodiscard]] Text readSelectedText(std::optional<ProcessIdentifier> targetProcessIdentifier,
                                        ClipboardSelectionReadPolicy policy, const std::function<void()>& copyCommand);

    /// As `readSelectedText`, but returns the error. `pressCopyItem`, if not empty, presses the Copy menu item and
    /// returns the error if that fails.
    [[nodiscard]] Outcome<Text> tryReadSelectedText(std::optional<ProcessIdentifier> targetProcessIdentifier,
                                                    ClipboardSelectionReadPolicy policy,
                                                    const CopyItemPress& pressCopyItem);

    /// Pastes `text` over the target's selection. Returns before the clipboard is restored: the main queue does that
    /// 0.3 to 2.5 s later, unless another program has written to the clipboard by then. Throws `BridgeError` with the
    /// clipboard restored: `clipboardFallbackFailed`, `keyboardEventPermissionRequired`.
    void replaceSelectedText(TextView text, std::optional<ProcessIdentifier> targetProcessIdentifier);

private:
    /// Returns true once the change count differs from `count`, or false after `timeout`. Runs the run loop, so that
    /// promised data is served during the wait.
    [[nodiscard]] bool waitForPasteboardChange(std::int64_t count, Duration timeout);

    Platform& platform_;
    ClipboardHold hold_;
};

}  // namespace lomaris
