#pragma once

#include "platform/linux/run_loop.h"
#include "platform/pasteboard.h"

#include <cstdint>
#include <memory>

namespace lomaris {

class ClipboardDesk;

/// The clipboard of an X11 session: the selection CLIPBOARD.
///
/// Opens a connection of its own at the first use; where there is no X server, or it went away, there are no items, no
/// writes are taken and the change count stands still. A type is the name of a target, except that plain text has the
/// name that the boundary gives it; another program's contents are one item. The program must ignore SIGPIPE. Main
/// thread only.
///
/// The owner of a selection must live to serve it, so that a small process is left behind at the end if this one still
/// owns the clipboard; it serves until another program takes over.
class LinuxPasteboard final : public Pasteboard {
public:
    /// `runLoop` outlives the pasteboard and serves other programs' requests during its slices.
    explicit LinuxPasteboard(RunLoop& runLoop) : runLoop_(runLoop) {}
    LinuxPasteboard(const LinuxPasteboard&) = delete;
    LinuxPasteboard& operator=(const LinuxPasteboard&) = delete;
    ~LinuxPasteboard() override { finish(); }

    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> items() override;
    [[nodiscard]] std::optional<Text> string() override;
    [[nodiscard]] std::int64_t changeCount() override;
    void clearContents() override;
    [[nodiscard]] bool writeItems(std::vector<NewPasteboardItem> items) override;
    [[nodiscard]] std::unique_ptr<PasteboardHold> tryHold() override;

    /// Asks providers for what is still promised and leaves the process behind. From then on there is no clipboard.
    /// Also to be called before a signal ends the process, though not from its handler. Does not wait.
    void finish();

private:
    enum class State : std::uint8_t { unopened, open, gone };

    /// The clipboard, or null where there is none (any more).
    [[nodiscard]] std::shared_ptr<ClipboardDesk> desk();
    void serve();
    void letGo();

    RunLoop& runLoop_;
    State state_ = State::unopened;
    std::shared_ptr<ClipboardDesk> desk_;
    std::int64_t lastChangeCount_ = 0;
};

}  // namespace lomaris
