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

/// The operations of the clipboard on one X11 connection: reads what other programs own, publishes what this process
/// writes, and takes the exclusive use for an operation. Main thread.
///
/// The keeper owns the clipboard with what this process writes; this object has a copy of the contents. Without a
/// keeper, this process is the selection owner itself. It then replies to requests of other programs only in `serve`,
/// so that a provider is not called at any other time. (The reader serves requests too while it waits for another
/// owner, but then this process owns nothing.)
class ClipboardDesk final : public std::enable_shared_from_this<ClipboardDesk> {
public:
    explicit ClipboardDesk(KeeperStart startKeeper);

    /// Connects to the X server. Returns false if the clipboard cannot be used. To be called once, before all others.
    [[nodiscard]] bool open();
    [[nodiscard]] bool isAlive() { return session_.isAlive(); }
    [[nodiscard]] int descriptor() const { return session_.descriptor(); }

    // The functions of `Pasteboard`.
    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> items();
    [[nodiscard]] std::optional<Text> string();
    [[nodiscard]] std::int64_t changeCount();
    void clear();
    [[nodiscard]] bool write(std::vector<NewPasteboardItem> items);

    /// Handles the events and messages that have arrived: requests of other programs, and messages of the keeper.
    void serve();

    /// Readable when there is a message of the keeper. Negative if there is no keeper.
    [[nodiscard]] int keeperDescriptor() const { return keeper_.descriptor(); }

    // The functions of `PasteboardHold`.

    /// Takes the exclusive use of the clipboard. Returns false if another process has it.
    [[nodiscard]] bool beginOperation();
    void protect(const std::vector<PasteboardItemContents>& saved);
    /// True if the keeper would restore the clipboard if this process died now.
    [[nodiscard]] bool isProtected() const { return isProtected_ && keeper_.descriptor() >= 0; }
    void expectCopy(std::optional<ProcessIdentifier> target, Duration wait) { keeper_.expectCopy(target, wait); }
    void expectPaste(Duration minimumWait, Duration graceWait);
    void endOperation();

    /// Ends the use of the clipboard: calls the providers of all promised types if the contents of this process are
    /// current, ends the operation, and disconnects from the keeper, which continues to serve the contents.
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
    // Null if another program owns the clipboard.
    std::shared_ptr<ClipboardContents> contents_;
    ClipboardServer server_;
    ClipboardReader reader_;
    PropertyForms forms_;
    ClipboardExclusion exclusion_{session_};
    KeeperLink keeper_;
    /// True if the contents were cleared and nothing has been written since. The keeper publishes them only with the
    /// write or the next call, so that no reader finds an empty clipboard between the two.
    bool isUnpublished_ = false;
    /// True while events are handled that may be older than the publication.
    bool isPublishing_ = false;
    bool isProtected_ = false;
    /// The contents whose promised text the keeper serves. Another program may have replaced them since.
    std::shared_ptr<ClipboardContents> promised_;
};

}  // namespace lomaris
