#pragma once

#include <functional>

namespace lomaris {

/// Leaves a process behind that goes on with `serve` and ends by itself once that returns. It keeps nothing of this one
/// but its memory and `descriptor`: every other file is closed (the reader of our output waits for its end), signals do
/// what they do by default, and it belongs to no session. None of this process's destructors and exit handlers run in
/// it. It is nobody's child, so that nobody has to wait for it.
///
/// In this process, `descriptor` is replaced by one that leads nowhere: to shut the connection behind it down, as its
/// library does at the end, would shut it down for both. Whether all of that worked; where not, nothing changed.
[[nodiscard]] bool leaveSuccessor(int descriptor, const std::function<void()>& serve);

}  // namespace lomaris
