#pragma once

#include "bridge/bridge_command.h"
#include "platform/platform.h"
#include "platform/standard_streams.h"
#include "text/text.h"

#include <span>

namespace lomaris {

/// Exit statuses of the tool.
namespace exit_status {
inline constexpr int success = 0;
inline constexpr int failure = 1;
/// Only of `permission-status`: the process is not trusted.
inline constexpr int notGranted = 2;
}  // namespace exit_status

/// Runs one command and writes its result to standard output; answers the exit status. Nothing is written unless the
/// command succeeded. The wait for the delay comes before the platform is used for anything else. Throws `BridgeError`,
/// `BridgeInputError`, `StandardStreamError`. Main thread.
[[nodiscard]] int execute(const BridgeCommand& command, Platform& platform, StandardStreams& streams);

/// The whole tool but for the process around it: parses the arguments (without the program name), executes, and turns
/// an error into its one line on standard error. Answers the exit status; throws nothing but what running out of memory
/// while writing that line throws. Main thread.
[[nodiscard]] int runCommandLine(std::span<const Text> arguments, Platform& platform, StandardStreams& streams);

}  // namespace lomaris
