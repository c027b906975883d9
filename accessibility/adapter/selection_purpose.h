#pragma once

#include <cstdint>

namespace lomaris {

/// Why a selection is read.
enum class SelectionPurpose : std::uint8_t {
    /// A plain read: no early refusal, no look for the Copy command after a failure.
    standard = 0,
    /// The user invoked the assistant by its shortcut: file managers are refused, and a terminal's selection without a
    /// range is not read directly.
    shortcut = 1,
    /// The second look before a guarded replacement.
    guardedReplacement = 2,
};

/// What a caller wants to read, whatever the purpose.
struct SelectionReadOptions {
    /// UTF-16 units of context wanted before and after the selection. If one of them is negative, both
    /// sides are empty.
    std::int64_t beforeLimit = 0;
    std::int64_t afterLimit = 0;
    /// Whether the keyboard/clipboard route may be used.
    bool allowClipboardFallback = false;
};

}  // namespace lomaris
