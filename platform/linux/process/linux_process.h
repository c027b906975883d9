#pragma once

#include "platform/accessibility.h"

#include <optional>
#include <string>

namespace lomaris {

/// The name of a running process, from /proc/PID/comm: the first 15 bytes of the file name of its program, unless the
/// process has changed it. nullopt if no process has this identifier, or if it is that of a zombie or of a thread other
/// than a main thread. Any thread.
[[nodiscard]] std::optional<std::string> nameOfProcess(ProcessIdentifier processIdentifier);

}  // namespace lomaris
