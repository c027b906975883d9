#pragma once

#include "platform/platform.h"

#include <memory>

namespace lomaris {

/// Whose process the platform lives in.
enum class ProcessRole {
    /// A program that embeds the library. Signals are its own; it must ignore SIGPIPE, as connections may be closed by
    /// their other end.
    host,
    /// The tool: once the pasteboard is in use, a signal that asks the process to end is put off until the pasteboard
    /// is in order.
    tool,
};

/// The platform that this build runs on; the build chooses the implementation. Cheap: it connects to nothing and loads
/// nothing until a service is used. The caller owns the result. Main thread.
[[nodiscard]] std::unique_ptr<Platform> nativePlatform(ProcessRole role = ProcessRole::host);

}  // namespace lomaris
