#pragma once

#include "platform/platform.h"

#include <optional>

namespace lomaris {

/// The key presses that the fallback needs.
namespace key_stroke {
inline constexpr KeyStroke copy{.keyCode = 8, .flags = commandFlag};
inline constexpr KeyStroke paste{.keyCode = 9, .flags = commandFlag};
inline constexpr KeyStroke collapseSelection{.keyCode = 51, .flags = 0};
}  // namespace key_stroke

/// Posts one press of a key, down and up, to the session where the target is in front or none is given, else to the
/// target's process alone. Throws `BridgeError`: `keyboardEventPermissionRequired` where events may not be posted even
/// after asking; `clipboardFallbackFailed` where they cannot be created. Nothing was posted then. Whether the target
/// heeds the press is not known here. Main thread.
void postKey(Platform& platform, KeyStroke keyStroke, std::optional<ProcessIdentifier> targetProcessIdentifier);

/// Whether a text looks like a web address, before whose paste the selection must be deleted, as some editors would
/// otherwise make a link of the selected words. Only its start counts, white space aside.
[[nodiscard]] bool requiresSelectionCollapse(TextView text);

}  // namespace lomaris
