#pragma once

#include "platform/linux/x11/clipboard/keeper_channel.h"

namespace lomaris {

/// The keeper: a small process beside one that uses the clipboard, its partner. It owns and serves what the partner
/// puts on the clipboard, so that this outlives the partner, and restores the user's clipboard if the partner dies in
/// the middle of an operation. What it does when is decided in `platform/keeping/pasteboard_keeping.h`.
///
/// Owning the clipboard throughout also means that a sudden death never leaves it without an owner, which clipboard
/// managers take for a reason to own it themselves.
///
/// Returns when the partner is gone and another program owns the clipboard, or nothing is left to be served, or the X
/// server is gone. To be called once in a process.
void runClipboardKeeper(FileDescriptor channel);

}  // namespace lomaris
