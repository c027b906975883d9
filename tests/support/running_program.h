#pragma once

#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace lomaris::test {

/// A program that runs concurrently with the test and is killed on destruction. Its output is discarded.
class RunningProgram {
public:
    /// Starts the program; throws on failure. `variables` are set for it, all others are inherited.
    explicit RunningProgram(std::vector<std::string> commandLine,
                            const std::vector<std::pair<std::string, std::string>>& variables = {});
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram() { end(); }

    [[nodiscard]] pid_t processIdentifier() const { return processIdentifier_; }

    /// Stops the program, which then handles no requests until `resume`. Returns once it has stopped.
    void freeze() const;
    void resume() const;

    /// True if the program has not ended by itself.
    [[nodiscard]] bool runs() const;

    /// Kills the program and returns once it has ended. Harmless if it has ended already.
    void end();

private:
    pid_t processIdentifier_ = -1;
};

/// True if a program with this name can be started.
[[nodiscard]] bool isInstalled(const std::string& program);

/// The programs of this list that are not installed, with the packages that contain them, as one readable line; empty
/// if none is missing.
[[nodiscard]] std::string missingPrograms(const std::vector<std::string>& programs);

}  // namespace lomaris::test
