#pragma once

#include "tests/support/running_program.h"
#include "tests/support/temporary_directory.h"

#include <memory>
#include <string>
#include <vector>

namespace lomaris::test {

/// One of the real terminals that the tests use. The command to run in it is appended to the command line.
struct TerminalProgram {
    std::string name;
    std::vector<std::string> commandLine;
};

/// A terminal in which Control+Shift+C copies, and one without a key to copy.
[[nodiscard]] TerminalProgram xfceTerminal();
[[nodiscard]] TerminalProgram xterm();

/// A message that says what is missing on this machine to use this terminal. Empty if nothing is.
[[nodiscard]] std::string missingFor(const TerminalProgram& program);

/// A terminal in front with a job that has printed two words and records what it receives. Killed with this object.
class Terminal {
public:
    /// Returns when the window is in front and the job has printed its words. Throws if that does not happen.
    explicit Terminal(const TerminalProgram& program);
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() = default;

    [[nodiscard]] pid_t processIdentifier() const { return process_->processIdentifier(); }

    /// Selects the first of the printed words, `word`, with the pointer. Throws if that fails.
    void selectWord() const;
    static constexpr const char* word = "wonderful";

    /// Changes the class of the window.
    void setClass(const std::string& className) const;

    /// The signals ("INT ") and bytes that the job has received.
    [[nodiscard]] std::string received() const;

private:
    /// The first member, so that it is removed after the terminal has ended.
    TemporaryDirectory directory_;
    std::unique_ptr<RunningProgram> process_;
    std::string window_;
};

}  // namespace lomaris::test
