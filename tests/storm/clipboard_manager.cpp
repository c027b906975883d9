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

// Looks at the clipboard twice a second. Puts its last text on a clipboard that it finds without an owner, text that
// is marked as a password included.
ClipboardManagerProgram parcellite() { return {"Parcellite", "parcellite", {}, milliseconds(700)}; }

// Is told of each change. Restores what it kept, without plain text, when the clipboard has lost its owner.
ClipboardManagerProgram clipman() { return {"Clipman", "xfce4-clipman", {}, milliseconds(200)}; }

// Is told of each change. Keeps a history and leaves the clipboard alone.
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
