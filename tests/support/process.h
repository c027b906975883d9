#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace lomaris::test {

/// How a program is started.
struct ProcessOptions {
    /// The contents of its standard input; if empty, the input ends at once.
    std::string input;
    /// A file to use as standard output, instead of capturing it.
    std::optional<std::string> outputFile;
    /// Makes standard output a pipe whose reading end is closed.
    bool readerGoesAway = false;
    /// Streams that are closed when the program starts: 0, 1, 2.
    std::vector<int> closedDescriptors;
    /// Variables to set for the program, or to remove if the value is absent. All others are inherited.
    std::vector<std::pair<std::string, std::optional<std::string>>> environment;
};

/// The result of a program.
struct ProcessResult {
    /// Exit status, or the negated number of the signal that ended it.
    int status = 0;
    std::string output;
    std::string error;

    friend bool operator==(const ProcessResult&, const ProcessResult&) = default;
};

/// Prints a result if an assertion fails.
inline void PrintTo(const ProcessResult& result, std::ostream* stream) {
    *stream << "status " << result.status << ", output \"" << result.output << "\", error \"" << result.error << '"';
}

/// A program that runs concurrently with the caller. Used by one thread at a time, except for `kill`.
class StartedProcess {
public:
    /// Throws if the program cannot be started.
    explicit StartedProcess(const std::vector<std::string>& commandLine, const ProcessOptions& options = {});
    StartedProcess(const StartedProcess&) = delete;
    StartedProcess& operator=(const StartedProcess&) = delete;
    /// Kills the program if `wait` was not called.
    ~StartedProcess();

    /// Sends SIGKILL. Harmless after the program has ended, but must not be called after `wait` has returned.
    void kill() const;

    /// Writes the input, reads the outputs until they are closed, and waits for the program to end. Must be called only
    /// once.
    [[nodiscard]] ProcessResult wait();

private:
    struct Streams;

    std::unique_ptr<Streams> streams_;
    std::string input_;
    pid_t process_ = -1;
};

/// Runs a program and waits for its end. Throws if it cannot be started.
[[nodiscard]] ProcessResult runProcess(const std::vector<std::string>& commandLine, const ProcessOptions& options = {});

/// The command line of the tool of this build with these arguments.
[[nodiscard]] std::vector<std::string> toolCommandLine(std::vector<std::string> arguments);

/// Runs the tool of this build.
[[nodiscard]] ProcessResult runTool(std::vector<std::string> arguments, const ProcessOptions& options = {});

}  // namespace lomaris::test
