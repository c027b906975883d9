#pragma once

#include "tests/support/running_program.h"
#include "tests/support/temporary_directory.h"

#include <memory>
#include <string>
#include <vector>

namespace lomaris::test {

/// One of the real text editors that the tests use.
struct EditorProgram {
    std::string name;
    std::vector<std::string> commandLine;
};

/// An editor on GTK, and one on Qt.
[[nodiscard]] EditorProgram mousepad();
[[nodiscard]] EditorProgram featherPad();

/// A message that says what is missing on this machine to use this editor. Empty if nothing is.
[[nodiscard]] std::string missingFor(const EditorProgram& program);

/// An editor with its own document, in front and ready for keys. Killed with this object.
class Editor {
public:
    /// Starts the editor with a document with this text (UTF-8); returns when its window is in front and shows it.
    /// Throws if that does not happen.
    Editor(const EditorProgram& program, const std::string& text);
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;
    ~Editor() = default;

    [[nodiscard]] RunningProgram& process() { return *process_; }
    [[nodiscard]] pid_t processIdentifier() const { return process_->processIdentifier(); }

    /// Selects characters with key presses: `marked` cursor steps, beginning `start` steps after the beginning of the
    /// document. Returns when `expected` is selected. Throws after a timeout.
    void mark(int start, int marked, const std::string& expected);

private:
    /// The first member, so that it is removed after the editor has ended.
    TemporaryDirectory directory_;
    std::unique_ptr<RunningProgram> process_;
};

}  // namespace lomaris::test
