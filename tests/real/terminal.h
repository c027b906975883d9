#pragma once

#include "tests/support/running_program.h"
#include "tests/support/temporary_directory.h"

#include <memory>
#include <string>
#include <vector>

namespace lomaris::test {

/// One of the real terminals that the tests drive. The command to run in it follows the command line.
struct TerminalProgram {
    std::string name;
    std::vector<std::string> commandLine;
};

/// A terminal that copies by Control+Shift+C, and one that has no key to copy.
[[nodiscard]] TerminalProgram xfceTerminal();
[[nodiscard]] TerminalProgram xterm();

/// What is missing on this machine to drive this terminal, as a line for people; empty if nothing is.
[[nodiscard]] std::string missingFor(const TerminalProgram& program);

/// A terminal in front with a job that has printed two words and records what it receives. Killed with this object.
class Terminal {
public:
    /// Returns once the window is in front and the job has printed its words. Throws if that does not happen.
    explicit Terminal(const TerminalProgram& program);
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() = default;

    [[nodiscard]] pid_t processIdentifier() const { return process_->processIdentifier(); }

    /// Selects the first of the printed words, `word`, with the pointer. Throws if it does not come to be selected.
    void selectWord() const;
    static constexpr const char* word = "wonderful";

    /// Gives the window another class.
    void setClass(const std::string& className) const;

    /// The signals ("INT ") and bytes that the job has received.
    [[nodiscard]] std::string received() const;

private:
    /// First, so that it is removed after the terminal has ended.
    TemporaryDirectory directory_;
    std::unique_ptr<RunningProgram> process_;
    std::string window_;
};

}  // namespace lomaris::test
