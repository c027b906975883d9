#pragma once

#include "tests/support/running_program.h"

#include <chrono>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace lomaris::test {

/// A clipboard manager: a program that watches the clipboard and stores its contents.
struct ClipboardManagerProgram {
    std::string name;
    /// The name of the program, which is also that of its Debian package.
    std::string program;
    /// The command that ends the program and its helpers. Empty if killing the program is enough.
    std::vector<std::string> exitCommand;
    /// The longest time until it has noticed and read new contents.
    std::chrono::milliseconds timeToNotice;

    friend std::ostream& operator<<(std::ostream& stream, const ClipboardManagerProgram& manager) {
        return stream << manager.name;
    }
};

[[nodiscard]] ClipboardManagerProgram parcellite();
[[nodiscard]] ClipboardManagerProgram clipman();
[[nodiscard]] ClipboardManagerProgram copyQ();

/// A running clipboard manager. The destructor ends it.
class ClipboardManager {
public:
    /// Starts the program and waits until it watches the clipboard.
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
