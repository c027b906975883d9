#include "tests/storm/clipboard_manager.h"

#include "tests/support/process.h"

#include <thread>
#include <utility>

namespace lomaris::test {

namespace {

using std::chrono::milliseconds;

/// A manager does not report when it is ready.
constexpr auto timeToStart = std::chrono::seconds(3);

}  // namespace

// All three read each new text, and do not write to a clipboard that has an owner, not even if its text is empty.

// Polls the clipboard about twice a second. Puts the last text that it read on a clipboard without an owner, even if
// the text is marked as a password.
ClipboardManagerProgram parcellite() { return {"Parcellite", "parcellite", {}, milliseconds(700)}; }

// Is notified of each change. Puts the stored contents, without the plain text, on a clipboard that has lost its owner.
ClipboardManagerProgram clipman() { return {"Clipman", "xfce4-clipman", {}, milliseconds(200)}; }

// Is notified of each change. Stores a history and never writes on its own.
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
