#pragma once

#include "platform/linux/process/run_loop.h"
#include "platform/linux/x11/clipboard/keeper_process.h"
#include "platform/pasteboard.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace lomaris {

class ClipboardDesk;

/// The pasteboard service of an X11 session: the selection CLIPBOARD.
///
/// This folder implements `Pasteboard` with X11 selections (ICCCM 2): reading from other owners (`clipboard_reader.h`),
/// serving readers (`clipboard_server.h`), and the keeper process (`clipboard_keeper.h`). `native_platform.cpp` and the
/// program of the keeper are its only users. It may use `x11/`, `process/`, `posix/`, and `platform/keeping/`, which
/// has the decisions of the keeper.
///
/// A selection can be read only while its owner runs. A small process next to this one, the keeper, therefore owns what
/// this process writes until another program becomes the owner, also after this process has ended; and it restores the
/// clipboard if this process dies during an operation. It is started before the first write or operation. If it cannot
/// be started, this process serves its contents itself while it runs.
///
/// Invariants:
/// 1. Nothing connects before the first use. The clipboard has its own connection, whose events are read only here.
/// 2. Without an X server, or when it is gone, there are no items, writes fail, and the change count does not change.
/// 3. A pasteboard type is the name of a target, except plain text: UTF8_STRING is `pasteboard_type::string`. The
///    contents of another program are one item.
/// 4. A provider of promised data is called only in a run-loop slice, while this process reads the type, in a write to
///    the keeper if it does not know the data in advance, and in `finish`.
/// 5. Data of other programs is never trusted: their replies may be late, malformed or missing (`ProgressDeadline`).
///
/// The program must ignore SIGPIPE. Main thread only.
class LinuxPasteboard final : public Pasteboard {
public:
    /// Called with true if from now on the keeper restores the clipboard when this process dies.
    using ProtectionListener = std::function<void(bool isProtected)>;

    /// `runLoop` must outlive the pasteboard; requests of other programs are served in its slices. `listener` is called
    /// each time an operation requests protection, and with false when the keeper is found to be gone; may be null.
    LinuxPasteboard(RunLoop& runLoop, KeeperStart startKeeper, ProtectionListener listener = nullptr);
    LinuxPasteboard(const LinuxPasteboard&) = delete;
    LinuxPasteboard& operator=(const LinuxPasteboard&) = delete;
    ~LinuxPasteboard() override;

    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> items() override;
    [[nodiscard]] std::optional<Text> string() override;
    [[nodiscard]] std::int64_t changeCount() override;
    void clearContents() override;
    [[nodiscard]] bool writeItems(std::vector<NewPasteboardItem> items) override;
    [[nodiscard]] std::unique_ptr<PasteboardHold> tryHold() override;

    /// Calls the providers of promised types and leaves the clipboard to the keeper. After that there is no clipboard.
    /// Also to be called before a signal ends the process, but not from its handler. Does not wait for other programs.
    void finish();

private:
    class Hold;
    enum class State : std::uint8_t { unopened, open, gone };

    /// The open clipboard. Null if there is none, or if it is gone.
    [[nodiscard]] std::shared_ptr<ClipboardDesk> desk();
    void serve();
    void watchKeeper();
    void reportProtection(bool isProtected) const;
    void letGo();

    RunLoop& runLoop_;
    KeeperStart startKeeper_;
    ProtectionListener listener_;
    State state_ = State::unopened;
    std::shared_ptr<ClipboardDesk> desk_;
    /// The descriptor of the keeper that the run loop watches. Negative if there is none.
    int watchedKeeper_ = -1;
    /// The current hold; there is at most one.
    std::weak_ptr<void> hold_;
    std::int64_t lastChangeCount_ = 0;
};

}  // namespace lomaris
