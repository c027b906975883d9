#pragma once

#include <cstdint>

namespace lomaris {

/// The reason for reading a selection. It also determines the attempts and the waits of a read through the clipboard.
enum class SelectionPurpose : std::uint8_t {
    /// A plain read. Does not reject any application early, and does not search for the Copy command after a failure.
    /// Copies in up to three attempts; ends if a press of the menu item yields no text within 0.2 s.
    standard = 0,
    /// The user invoked the assistant by its shortcut. Rejects file managers; copies the selection of a terminal that
    /// reports no range. Copies as `standard`, but in up to two attempts.
    shortcut = 1,
    /// The repeated read of a guarded replacement. Copies in up to three attempts, the last one with the key. After a
    /// press of the menu item it waits for up to 1.0 s, and then makes the next attempt.
    guardedReplacement = 2,
};

}  // namespace lomaris
