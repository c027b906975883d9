#pragma once

#include "bridge/bridge_command.h"
#include "platform/platform.h"
#include "platform/standard_streams.h"
#include "text/text.h"

#include <span>

namespace lomaris {

/// The exit statuses of the tool.
namespace exit_status {
inline constexpr int success = 0;
inline constexpr int failure = 1;
/// `permission-status` only: the process does not have the accessibility permission.
inline constexpr int notGranted = 2;
}  // namespace exit_status

/// Runs one command, writes its result to standard output and returns the exit status. Writes nothing if the command
/// fails. Waits for the delay before any other use of the platform. Throws `BridgeError`, `BridgeInputError` and
/// `StandardStreamError`. Main thread.
[[nodiscard]] int execute(const BridgeCommand& command, Platform& platform, StandardStreams& streams);

/// Parses the arguments (without the program name), runs the command and returns the exit status. Reports an error as
/// one line on standard error. Throws only if memory runs out while it writes that line. Main thread.
[[nodiscard]] int runCommandLine(std::span<const Text> arguments, Platform& platform, StandardStreams& streams);

}  // namespace lomaris
