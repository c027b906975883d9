#include "tests/storm/clipboard_manager.h"

#include "tests/support/process.h"

#include <thread>
#include <utility>

namespace lomaris::test {

namespace {

using std::chrono::milliseconds;

/// A manager does not tell when it is ready.
constexpr auto timeToStart = std::chrono::seconds(3);

}  // namespace

// All three read each new text, and leave a clipboard alone that has an owner, even an empty text.

// Looks at the clipboard about twice a second. Puts the last text that it saw on a clipboard without an owner, be it
// marked as a password.
ClipboardManagerProgram parcellite() { return {"Parcellite", "parcellite", {}, milliseconds(700)}; }

// Is told of each change. Puts what it kept on a clipboard that has lost its owner, without the plain text.
ClipboardManagerProgram clipman() { return {"Clipman", "xfce4-clipman", {}, milliseconds(200)}; }

// Is told of each change. Keeps a history and never writes by itself.
ClipboardManagerProgram copyQ() { return {"CopyQ", "copyq", {"copyq", "exit"}, milliseconds(500)}; }

ClipboardManager::ClipboardManager(ClipboardManagerProgram program)
    : program_(std::move(program)), process_({program_.program}) {
    std::this_thread::sleep_for(timeToStart);
}

ClipboardManager::~ClipboardManager() {
    if (!program_.exitCommand.empty()) {
        static_cast<void>(runProcess(program_.exitCommand));
    }
}

}  // namespace lomaris::test
