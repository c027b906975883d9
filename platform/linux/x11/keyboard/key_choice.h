#pragma once

#include "platform/event_services.h"
#include "platform/linux/applications/application_table.h"
#include "platform/linux/x11/keyboard/key_press_plan.h"
#include "platform/linux/x11/keyboard/key_receiver.h"

#include <functional>
#include <optional>

namespace lomaris {

/// Returns true if the focused element of a process is a terminal, false if not or if that cannot be determined. Called
/// on the main thread, and only for applications that are not in the table.
using TerminalQuery = std::function<bool(ProcessIdentifier)>;

/// The keys that have the effect of `keyStroke` in an application with these editing keys. nullopt if there are none,
/// or if the stroke is not Copy, Paste or Delete.
[[nodiscard]] std::optional<KeyWish> chooseKeys(KeyStroke keyStroke, applications::EditingKeys keys);

/// The editing keys of the application that receives the keys: those of its row in the table, otherwise `none` for a
/// terminal, otherwise `control`.
[[nodiscard]] applications::EditingKeys editingKeysOf(const std::optional<KeyReceiver>& receiver,
                                                      const TerminalQuery& isTerminalFocused);

/// A key stroke, and its receiver with the receiver's editing keys at the time when it was created.
struct PlannedStroke {
    KeyStroke keyStroke;
    std::optional<KeyReceiver> receiver;
    applications::EditingKeys keys = applications::EditingKeys::control;
};

/// The keys of a planned stroke if they are also right for `receiver`, which is about to get them; otherwise nullopt.
/// Does not repeat the query if `receiver` is the planned one.
[[nodiscard]] std::optional<KeyWish> keysStillRight(const PlannedStroke& stroke,
                                                    const std::optional<KeyReceiver>& receiver,
                                                    const TerminalQuery& isTerminalFocused);

}  // namespace lomaris
