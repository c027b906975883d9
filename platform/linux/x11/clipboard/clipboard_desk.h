#pragma once

#include "platform/linux/x11/clipboard/clipboard_contents.h"
#include "platform/linux/x11/clipboard/clipboard_exclusion.h"
#include "platform/linux/x11/clipboard/clipboard_ownership.h"
#include "platform/linux/x11/clipboard/clipboard_reader.h"
#include "platform/linux/x11/clipboard/clipboard_server.h"
#include "platform/linux/x11/clipboard/clipboard_session.h"
#include "platform/linux/x11/clipboard/keeper_link.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace lomaris {

/// The clipboard of an X11 session as this process has it: what it owns and what others own. Main thread.
///
/// What this process puts there is published by its keeper, which owns the clipboard for it; a copy stays here. Without
/// a keeper, this process owns the clipboard itself. Requests of other programs are then served by `serve` only, and
/// while another owner is waited for (when this process owns nothing), so that a provider is never called at any other
/// time.
class ClipboardDesk final : public std::enable_shared_from_this<ClipboardDesk> {
public:
    explicit ClipboardDesk(KeeperStart startKeeper);

    /// Whether the clipboard can be used at all; to be called first, and once.
    [[nodiscard]] bool open();
    [[nodiscard]] bool isAlive() { return session_.isAlive(); }
    [[nodiscard]] int descriptor() const { return session_.descriptor(); }

    // The operations of the pasteboard.
    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> items();
    [[nodiscard]] std::optional<Text> string();
    [[nodiscard]] std::int64_t changeCount();
    void clear();
    [[nodiscard]] bool write(std::vector<NewPasteboardItem> items);

    /// Handles what has arrived: requests of other programs, and what the keeper has to say.
    void serve();

    /// Readable when the keeper has something to say; negative if there is no keeper.
    [[nodiscard]] int keeperDescriptor() const { return keeper_.descriptor(); }

    // An operation with exclusive use of the clipboard; see `PasteboardHold`.
    /// Whether the clipboard was free for it.
    [[nodiscard]] bool beginOperation();
    void protect(const std::vector<PasteboardItemContents>& saved);
    /// Whether the keeper restores the clipboard if this process dies now.
    [[nodiscard]] bool isProtected() const { return isProtected_ && keeper_.descriptor() >= 0; }
    void expectCopy(std::optional<ProcessIdentifier> target, Duration wait) { keeper_.expectCopy(target, wait); }
    void expectPaste(Duration minimumWait, Duration graceWait);
    void endOperation();

    /// Calls providers for everything that is still only promised, if this process owns the clipboard, and leaves it to
    /// the keeper.
    void finish();

private:
    class OwnItem;
    class ForeignItem;
    struct ForeignContents;

    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> ownItems();
    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> foreignItems();
    [[nodiscard]] std::optional<Text> foreignString();
    [[nodiscard]] std::optional<Bytes> foreignData(ForeignContents& foreign, const PasteboardType& type);
    void handle(const xcb_generic_event_t& event);
    void letContentsGo();
    void settle();
    bool publish();

    ClipboardSession session_;
    ClipboardOwnership ownership_;
    // Null where another program owns the clipboard.
    std::shared_ptr<ClipboardContents> contents_;
    ClipboardServer server_;
    ClipboardReader reader_;
    PropertyForms forms_;
    ClipboardExclusion exclusion_{session_};
    KeeperLink keeper_;
    /// Contents that were cleared and not written yet: the keeper gets them with the write, or with the next call, so
    /// that no reader finds the empty clipboard in between.
    bool isUnpublished_ = false;
    /// Notifications of the server are read that may be older than the publication.
    bool isPublishing_ = false;
    bool isProtected_ = false;
    /// The contents whose promised text the keeper serves. They may have been replaced by another program's.
    std::shared_ptr<ClipboardContents> promised_;
};

}  // namespace lomaris
