#pragma once

#include "platform/posix/file_descriptor.h"

#include <sys/types.h>

#include <functional>
#include <string>

namespace lomaris {

/// A keeper that was started: this process's end of its channel, empty if it could not be started, and the child
/// process whose end is to be waited for. The child ends at once, as soon as it has started the keeper, which therefore
/// is no child of this process.
struct StartedKeeper {
    FileDescriptor socket;
    pid_t child = -1;
};

using KeeperStart = std::function<StartedKeeper()>;

/// Starts a keeper as a copy of this process. It inherits nothing but memory: every other file is closed (the reader of
/// our output waits for its end), signals have their default actions, and it belongs to no session. Only for a process
/// without other threads.
[[nodiscard]] StartedKeeper forkKeeper();

/// Starts a keeper from its program, for a process with threads. `program` is the path of the program.
[[nodiscard]] StartedKeeper spawnKeeper(const std::string& program);

/// The path of the keeper's program: `given`, or, if that is empty, the one beside the program of this process if there
/// is one, else the installed one.
[[nodiscard]] std::string keeperProgram(const std::string& given);

/// Waits for the child of a keeper that was started.
void reapKeeper(StartedKeeper& keeper);

/// The whole life of the keeper's program: becomes independent of the process that started it, with the channel on
/// `channelNumber`, and runs.
[[noreturn]] void runKeeperProgram();

}  // namespace lomaris
