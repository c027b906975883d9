#pragma once

#include "platform/posix/file_descriptor.h"

#include <sys/types.h>

#include <functional>
#include <string>

namespace lomaris {

/// A keeper that was started. `socket` is this process's end of the channel; empty if the keeper could not be started.
/// `child` is a child process to be reaped by `reapKeeper`: it forks the keeper and exits at once, so that the keeper
/// is not a child of this process.
struct StartedKeeper {
    FileDescriptor socket;
    pid_t child = -1;
};

using KeeperStart = std::function<StartedKeeper()>;

/// Starts a keeper by forking this process. The keeper inherits only memory: all other files are closed (a reader of
/// our output waits until every copy is closed), signals have their default actions, and it has its own session. Only
/// for a process without other threads.
[[nodiscard]] StartedKeeper forkKeeper();

/// Starts a keeper from its own program, for a process with threads. `program` is the path.
[[nodiscard]] StartedKeeper spawnKeeper(const std::string& program);

/// The path of the keeper's program: `given` if it is not empty, otherwise the one in the directory of this process's
/// program if there is one, otherwise the installed one.
[[nodiscard]] std::string keeperProgram(const std::string& given);

/// Waits for the child process, which exits at once. No effect the second time.
void reapKeeper(StartedKeeper& keeper);

/// The main function of the keeper's program: detaches from the process that started it and runs the keeper with the
/// channel on descriptor 3.
[[noreturn]] void runKeeperProgram();

}  // namespace lomaris
