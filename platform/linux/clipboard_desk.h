#pragma once

#include "platform/linux/clipboard_contents.h"
#include "platform/linux/clipboard_ownership.h"
#include "platform/linux/clipboard_reader.h"
#include "platform/linux/clipboard_server.h"
#include "platform/linux/clipboard_session.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace lomaris {

/// The clipboard of an X11 session as this process has it: what it owns, what others own, and who asks. Main thread.
///
/// Requests of other programs are answered by `serve` only, and while another owner is waited for (when this process
/// owns nothing), so that a provider is never asked at any other time.
class ClipboardDesk final : public std::enable_shared_from_this<ClipboardDesk> {
public:
    ClipboardDesk();

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

    /// Looks what has arrived and answers the requests among it.
    void serve();

    /// Asks for everything that is still only promised, where this process owns the clipboard; whether it then has
    /// anything to offer.
    [[nodiscard]] bool keepPromises();

    /// Serves until another program owns the clipboard, or there is no server any more.
    void serveToTheEnd();

private:
    class OwnItem;
    class ForeignItem;
    struct ForeignContents;

    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> ownItems();
    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> foreignItems();
    [[nodiscard]] std::optional<Text> foreignString();
    [[nodiscard]] std::optional<Bytes> foreignData(ForeignContents& foreign, const PasteboardType& type);
    void handle(const xcb_generic_event_t& event);

    ClipboardSession session_;
    ClipboardOwnership ownership_;
    // Null where another program owns the clipboard.
    std::shared_ptr<ClipboardContents> contents_;
    ClipboardServer server_;
    ClipboardReader reader_;
    PropertyForms forms_;
};

}  // namespace lomaris
