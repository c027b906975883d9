#pragma once

#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace lomaris::test {

/// A program that runs beside the test and is ended with this object. Its output goes nowhere.
class RunningProgram {
public:
    /// Starts it; throws where that fails. `variables` are set for it, the rest is inherited.
    explicit RunningProgram(std::vector<std::string> commandLine,
                            const std::vector<std::pair<std::string, std::string>>& variables = {});
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram() { end(); }

    [[nodiscard]] pid_t processIdentifier() const { return processIdentifier_; }

    /// Stops it where it stands; it answers nothing until `resume`. Returns once it stands still.
    void freeze() const;
    void resume() const;

    /// Whether it has not ended by itself.
    [[nodiscard]] bool runs() const;

    /// Kills it and returns once it is gone. Harmless when it is gone already.
    void end();

private:
    pid_t processIdentifier_ = -1;
};

/// Whether a program can be started by this name.
[[nodiscard]] bool isInstalled(const std::string& program);

/// Programs of this list that are not installed, with the packages that have them, as one line for people; empty where
/// none is missing.
[[nodiscard]] std::string missingPrograms(const std::vector<std::string>& programs);

}  // namespace lomaris::test
