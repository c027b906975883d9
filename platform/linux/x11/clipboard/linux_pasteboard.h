#pragma once

#include "platform/linux/process/run_loop.h"
#include "platform/linux/x11/clipboard/keeper_process.h"
#include "platform/pasteboard.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace lomaris {

class ClipboardDesk;

/// The clipboard of an X11 session: the selection CLIPBOARD.
///
/// Opens a connection of its own at the first use; if there is no X server, or it is gone, there are no items, no
/// writes are taken and the change count does not change. A type is the name of a target, except that plain text has
/// the name that the boundary gives it; another program's contents are one item. The program must ignore SIGPIPE. Main
/// thread only.
///
/// The owner of a selection must live to serve it. A small process beside this one, the keeper, therefore owns what
/// this process writes, until another program takes over, also after the end of this process; and it restores the
/// clipboard if this process dies in the middle of an operation. It is started before the first write or operation. If
/// it cannot be started, this process serves what it writes itself, for as long as it runs.
class LinuxPasteboard final : public Pasteboard {
public:
    /// Called with whether the keeper restores the clipboard if this process dies from then on.
    using ProtectionListener = std::function<void(bool isProtected)>;

    /// `runLoop` outlives the pasteboard and serves other programs' requests during its slices. `listener` is called
    /// each time an operation asks for protection, and with false when the keeper is found to be gone; may be null.
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

    /// Calls providers for what is still promised and leaves the clipboard to the keeper. From then on there is no
    /// clipboard. Also to be called before a signal ends the process, though not from its handler. Does not wait for
    /// other programs.
    void finish();

private:
    class Hold;
    enum class State : std::uint8_t { unopened, open, gone };

    /// The clipboard, or null if there is none (any more).
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
    /// The descriptor of the keeper that the run loop watches; negative if none.
    int watchedKeeper_ = -1;
    /// The hold under way, of which there is one at a time.
    std::weak_ptr<void> hold_;
    std::int64_t lastChangeCount_ = 0;
};

}  // namespace lomaris
