#pragma once

#include "accessibility/model/bridge_error.h"
#include "platform/platform.h"

#include <optional>

namespace lomaris {

/// The key strokes that the fallback posts.
namespace key_stroke {
inline constexpr KeyStroke copy{.keyCode = 8, .flags = commandFlag};
inline constexpr KeyStroke paste{.keyCode = 9, .flags = commandFlag};
inline constexpr KeyStroke collapseSelection{.keyCode = 51, .flags = 0};
}  // namespace key_stroke

/// Posts a key-down and a key-up event: to the session if the target is in front or none is given, otherwise only to
/// the target's process. Does not report whether the target handles them. Main thread.
///
/// Throws `BridgeError` with nothing posted: `keyboardEventPermissionRequired` if the process may not post events, even
/// after a request for permission; `clipboardFallbackFailed` if the events cannot be created.
void postKey(Platform& platform, KeyStroke keyStroke, std::optional<ProcessIdentifier> targetProcessIdentifier);

/// As `postKey`, but returns the error.
[[nodiscard]] std::optional<BridgeError> tryPostKey(Platform& platform, KeyStroke keyStroke,
                                                    std::optional<ProcessIdentifier> targetProcessIdentifier);

/// True if the text looks like a web address: its start, after white space, is "http://", "https://" or "www.", in any
/// letter case. The selection must be deleted before such a text is pasted; otherwise some editors turn the selected
/// words into a link.
[[nodiscard]] bool requiresSelectionCollapse(TextView text);

}  // namespace lomaris
