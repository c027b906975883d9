#pragma once

#include "platform/platform.h"

#include <memory>
#include <string>

namespace lomaris {

/// The kind of process that uses the platform.
enum class ProcessRole {
    /// A program that embeds the library. It handles signals itself, and must ignore SIGPIPE because a peer may close a
    /// connection at any time.
    host,
    /// The command-line tool. The platform catches termination signals from the first `Scheduling::onTermination` on,
    /// so that the clipboard is restored before the process ends.
    tool,
};

/// Creates the platform that this build was made for. Cheap: it loads no library and opens no connection before the
/// first use of a service. The caller owns the result. Main thread.
///
/// `clipboardKeeper` is the path of the keeper program, which continues to serve the clipboard after the host has
/// ended, and restores the user's clipboard if the host dies during an operation. Only hosts on Linux use it. If it is
/// empty, the platform uses the program beside the host's executable or, if there is none, the one at the path where
/// this build installs it. If there is no such program, the host works without a keeper.
[[nodiscard]] std::unique_ptr<Platform> nativePlatform(ProcessRole role = ProcessRole::host,
                                                       const std::string& clipboardKeeper = {});

}  // namespace lomaris
