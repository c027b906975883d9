#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

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

/// Runs a program to its end. Throws where it cannot be started.
[[nodiscard]] ProcessResult runProcess(const std::vector<std::string>& commandLine, const ProcessOptions& options = {});

/// Runs the tool of this build.
[[nodiscard]] ProcessResult runTool(std::vector<std::string> arguments, const ProcessOptions& options = {});

}  // namespace lomaris::test
