#pragma once

#include "platform/event_services.h"
#include "platform/linux/applications/application_table.h"
#include "platform/linux/x11/keyboard/key_press_plan.h"
#include "platform/linux/x11/keyboard/key_receiver.h"

#include <functional>
#include <optional>

namespace lomaris {

/// Whether the focused element of a process is a terminal. False if that cannot be determined. Called on the main
/// thread, only for applications that are not in the table.
using TerminalQuery = std::function<bool(ProcessIdentifier)>;

/// The keys that have the effect of `keyStroke` in an application with these editing keys. nullopt if there are none,
/// or if the stroke is not one of the tool's: Copy, Paste, Delete.
[[nodiscard]] std::optional<KeyWish> chooseKeys(KeyStroke keyStroke, applications::EditingKeys keys);

/// The editing keys of the application that receives the keys: those of its row in the table, else none in a terminal,
/// else those of an ordinary application.
[[nodiscard]] applications::EditingKeys editingKeysOf(const std::optional<KeyReceiver>& receiver,
                                                      const TerminalQuery& isTerminalFocused);

/// A stroke, and what was known of its receiver when it was created.
struct PlannedStroke {
    KeyStroke keyStroke;
    std::optional<KeyReceiver> receiver;
    applications::EditingKeys keys = applications::EditingKeys::control;
};

/// The keys of a planned stroke, which is about to be pressed for `receiver`. nullopt if other keys, or none, are right
/// for that one. Does not repeat the query for the receiver of the plan.
[[nodiscard]] std::optional<KeyWish> keysStillRight(const PlannedStroke& stroke,
                                                    const std::optional<KeyReceiver>& receiver,
                                                    const TerminalQuery& isTerminalFocused);

}  // namespace lomaris
