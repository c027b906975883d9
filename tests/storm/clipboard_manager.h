#pragma once

#include "tests/support/running_program.h"

#include <chrono>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace lomaris::test {

/// A program that watches the clipboard and keeps its contents.
struct ClipboardManagerProgram {
    std::string name;
    /// The program, which has the name of its Debian package.
    std::string program;
    /// Ends it and its helpers; empty if killing the program is enough.
    std::vector<std::string> exitCommand;
    /// The longest time in which it notices new contents and has read them.
    std::chrono::milliseconds timeToNotice;

    friend std::ostream& operator<<(std::ostream& stream, const ClipboardManagerProgram& manager) {
        return stream << manager.name;
    }
};

[[nodiscard]] ClipboardManagerProgram parcellite();
[[nodiscard]] ClipboardManagerProgram clipman();
[[nodiscard]] ClipboardManagerProgram copyQ();

/// A clipboard manager that runs. Ended with this object.
class ClipboardManager {
public:
    /// Returns once it watches the clipboard.
    explicit ClipboardManager(ClipboardManagerProgram program);
    ClipboardManager(const ClipboardManager&) = delete;
    ClipboardManager& operator=(const ClipboardManager&) = delete;
    ~ClipboardManager();

    [[nodiscard]] bool runs() const { return process_.runs(); }

private:
    ClipboardManagerProgram program_;
    RunningProgram process_;
};

}  // namespace lomaris::test
