#pragma once

#include "platform/scheduling.h"

namespace lomaris {

/// Blocks until one of `events` (POLLIN, POLLOUT) or an error is pending on the descriptor, or until `deadline` on the
/// monotonic clock; `Moment::max()` means no deadline. Returns false if the deadline passed. Also returns true after a
/// signal, so the caller must check the descriptor. Any thread.
[[nodiscard]] bool awaitReady(int descriptor, short events, Moment deadline);

}  // namespace lomaris
