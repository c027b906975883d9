#pragma once

#include "platform/platform.h"

#include <memory>
#include <string>

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
///
/// `clipboardKeeper`: the path of the program that restores the clipboard if a host dies in the middle of an operation,
/// and serves the clipboard after its end; on Linux, for hosts. If it is empty, the program is looked for beside that
/// of the host, then where this build installs it. Without the program both are left undone.
[[nodiscard]] std::unique_ptr<Platform> nativePlatform(ProcessRole role = ProcessRole::host,
                                                       const std::string& clipboardKeeper = {});

}  // namespace lomaris
