#pragma once

#include "tests/support/running_program.h"
#include "tests/support/temporary_directory.h"

#include <memory>
#include <string>
#include <vector>

namespace lomaris::test {

/// One of the real text editors that the tests drive.
struct EditorProgram {
    std::string name;
    std::vector<std::string> commandLine;
};

/// A GTK editor, and a Qt one.
[[nodiscard]] EditorProgram mousepad();
[[nodiscard]] EditorProgram featherPad();

/// What is missing on this machine to drive this editor, as a line for people; empty where nothing is.
[[nodiscard]] std::string missingFor(const EditorProgram& program);

/// An editor with a document of its own, in front and ready for keys. Killed with this object.
class Editor {
public:
    /// Starts the editor on a document with this text (UTF-8); returns once its window is in front and shows it. Throws
    /// where that does not happen.
    Editor(const EditorProgram& program, const std::string& text);
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;
    ~Editor() = default;

    [[nodiscard]] RunningProgram& process() { return *process_; }
    [[nodiscard]] pid_t processIdentifier() const { return process_->processIdentifier(); }

    /// Marks characters with real key presses: `start` cursor steps from the beginning of the document, then as many
    /// as `marked` says. Returns once `expected` is marked; throws where it never is.
    void mark(int start, int marked, const std::string& expected);

private:
    /// First, so that it goes when the editor has ended.
    TemporaryDirectory directory_;
    std::unique_ptr<RunningProgram> process_;
};

}  // namespace lomaris::test
