#pragma once

#include "platform/accessibility.h"

#include <optional>
#include <string>

namespace lomaris {

/// The short name of a live process (the first 15 bytes of its program's file name), or nothing where no process has
/// this identifier: it never existed, ended, waits for its parent to take note of its end, or is a mere thread.
[[nodiscard]] std::optional<std::string> nameOfProcess(ProcessIdentifier processIdentifier);

}  // namespace lomaris
