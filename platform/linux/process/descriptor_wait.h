#pragma once

#include "platform/scheduling.h"

namespace lomaris {

/// Blocks until `events` (POLLIN, POLLOUT) or an error are pending on the descriptor, or the deadline of the monotonic
/// clock passes; `Moment::max()` is none. False if the deadline passed. True after an interruption by a signal, so that
/// the caller has to check for itself. Any thread.
[[nodiscard]] bool awaitReady(int descriptor, short events, Moment deadline);

}  // namespace lomaris
