#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace lomaris::test {

/// How many processes a program has on the private desktop, and how many files all of them have open.
struct ProgramCount {
    std::size_t processes = 0;
    std::size_t openFiles = 0;
};

/// What takes up room on the private desktop, counted to find what is left behind.
struct DesktopCensus {
    /// By the file name of the program, the servers of the desktop included. Without the processes of the tool, and
    /// without processes that have ended.
    std::map<std::string, ProgramCount> programs;
    /// Processes of the tool: running commands, and whatever serves the clipboard after them.
    std::size_t toolProcesses = 0;
    /// All windows of the X server, mapped or not.
    std::size_t windows = 0;
};

/// Counts. Throws if there is no private desktop or no X server.
[[nodiscard]] DesktopCensus takeCensus();

/// The processes of the tool alone.
[[nodiscard]] std::vector<pid_t> toolProcesses();

}  // namespace lomaris::test
