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
    /// What stands on its standard input; nothing is an input that ends at once.
    std::string input;
    /// A file that takes the place of standard output, instead of being captured.
    std::optional<std::string> outputFile;
    /// Standard output is a pipe that nobody reads any more.
    bool readerGoesAway = false;
    /// Streams that are closed when the program starts: 0, 1, 2.
    std::vector<int> closedDescriptors;
    /// Variables set for the program, or removed where the value is absent. The rest is inherited.
    std::vector<std::pair<std::string, std::optional<std::string>>> environment;
};

/// What became of it.
struct ProcessResult {
    /// Exit status, or the negated number of the signal that ended it.
    int status = 0;
    std::string output;
    std::string error;

    friend bool operator==(const ProcessResult&, const ProcessResult&) = default;
};

/// How a failing assertion shows it.
inline void PrintTo(const ProcessResult& result, std::ostream* stream) {
    *stream << "status " << result.status << ", output \"" << result.output << "\", error \"" << result.error << '"';
}

/// A program that runs while the caller does something else. One thread at a time, except for `kill`.
class StartedProcess {
public:
    /// Throws if the program cannot be started.
    explicit StartedProcess(const std::vector<std::string>& commandLine, const ProcessOptions& options = {});
    StartedProcess(const StartedProcess&) = delete;
    StartedProcess& operator=(const StartedProcess&) = delete;
    /// Kills the program unless it was waited for.
    ~StartedProcess();

    /// Sends SIGKILL. Harmless after the program has ended, but not after `wait` has returned.
    void kill() const;

    /// Writes the input, collects the outputs until they are closed, and waits for the end. To be called once.
    [[nodiscard]] ProcessResult wait();

private:
    struct Streams;

    std::unique_ptr<Streams> streams_;
    std::string input_;
    pid_t process_ = -1;
};

/// Runs a program to its end. Throws where it cannot be started.
[[nodiscard]] ProcessResult runProcess(const std::vector<std::string>& commandLine, const ProcessOptions& options = {});

/// The tool of this build with these arguments, as a command line.
[[nodiscard]] std::vector<std::string> toolCommandLine(std::vector<std::string> arguments);

/// Runs the tool of this build.
[[nodiscard]] ProcessResult runTool(std::vector<std::string> arguments, const ProcessOptions& options = {});

}  // namespace lomaris::test
