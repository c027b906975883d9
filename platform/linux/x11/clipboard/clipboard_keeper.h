#pragma once

#include "platform/linux/x11/clipboard/keeper_channel.h"

namespace lomaris {

/// Runs the keeper: a small process next to one that uses the clipboard, its partner. The keeper owns and serves what
/// the partner writes to the clipboard, also after the partner has ended, and restores the user's clipboard if the
/// partner dies during an operation. `platform/keeping/pasteboard_keeping.h` decides when it does what.
///
/// As the keeper is the owner throughout, the clipboard has an owner even if the partner dies. Without an owner, a
/// clipboard manager would take ownership itself.
///
/// Returns when the X server is gone, or when the partner is gone and either another program owns the clipboard or the
/// contents are empty. To be called once in a process.
void runClipboardKeeper(FileDescriptor channel);

}  // namespace lomaris
