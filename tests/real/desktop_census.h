#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace lomaris::test {

/// The number of processes of a program on the private desktop, and the number of files that they have open.
struct ProgramCount {
    std::size_t processes = 0;
    std::size_t openFiles = 0;
};

/// The numbers of processes, open files and windows on the private desktop, to detect leaks.
struct DesktopCensus {
    /// By the file name of the program, the servers of the desktop included. Without the processes of the tool, and
    /// without processes that have ended.
    std::map<std::string, ProgramCount> programs;
    /// Processes of the tool: running commands and keepers.
    std::size_t toolProcesses = 0;
    /// All windows of the X server, mapped or not.
    std::size_t windows = 0;
};

/// Counts them. Throws if there is no private desktop or no X server.
[[nodiscard]] DesktopCensus takeCensus();

/// The processes of the tool.
[[nodiscard]] std::vector<pid_t> toolProcesses();

}  // namespace lomaris::test
