#pragma once

#include "accessibility/fallback/clipboard_hold.h"
#include "platform/platform.h"
#include "text/text.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace lomaris {

/// How persistently a selection is read through the clipboard. The values are those of the purposes of a read.
enum class ClipboardSelectionReadPolicy : std::uint8_t {
    /// Three attempts; a menu command that yields no text within 0.2 s ends the read.
    standard = 0,
    /// The same with two attempts.
    shortcut = 1,
    /// Three attempts, the last one by key; a menu command has 1.0 s and is followed by the next attempt.
    guardedReplacement = 2,
};

/// Reads and replaces the selection of applications that do not expose it: makes them copy and paste, with the user's
/// clipboard saved before and restored afterwards, also if the process is told to end in the middle, unless the target
/// has been told to paste. Only one operation of all processes uses the clipboard at a time: one that finds it in use
/// waits for up to 10 s and then fails, having touched nothing. An operation that follows a paste of this object waits
/// until the target has read the text and restores what that paste had saved.
///
/// Main thread; synchronous except for the restore after a paste. Borrows the platform, which must outlive it.
class KeyboardClipboardFallback {
public:
    explicit KeyboardClipboardFallback(Platform& platform) : platform_(platform), hold_(platform) {}

    /// Makes everything up to the end of the scope one operation: no other operation uses the clipboard between its
    /// reads and its paste. Scopes nest.
    [[nodiscard]] ClipboardHold::Scope operation() { return ClipboardHold::Scope(hold_); }

    /// Makes the target copy and answers the text. `copyCommand`, where there is one, presses the target's Copy menu
    /// item and throws `BridgeError` where it cannot. Every exit has restored the clipboard. Throws `BridgeError`:
    /// `noTextSelected`, `clipboardFallbackFailed`, `keyboardEventPermissionRequired`.
    [[nodiscard]] Text readSelectedText(std::optional<ProcessIdentifier> targetProcessIdentifier,
                                        ClipboardSelectionReadPolicy policy, const std::function<void()>& copyCommand);

    /// Pastes `text` over the target's selection and returns without waiting for the clipboard's restore, which the
    /// main queue does 0.3 to 2.5 seconds later unless somebody has written to the clipboard by then. Throws
    /// `BridgeError` with the clipboard restored: `clipboardFallbackFailed`, `keyboardEventPermissionRequired`.
    void replaceSelectedText(TextView text, std::optional<ProcessIdentifier> targetProcessIdentifier);

private:
    /// Whether the change count differs from `count` before the time is over; turns the run loop meanwhile, so that
    /// promised data can be served.
    [[nodiscard]] bool waitForPasteboardChange(std::int64_t count, Duration timeout);

    Platform& platform_;
    ClipboardHold hold_;
};

}  // namespace lomaris
