#pragma once

#include "platform/linux/clipboard_ownership.h"
#include "platform/pasteboard.h"

#include <optional>

namespace lomaris {

/// What another program answered for one target.
struct ReadTarget {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 8;
    Bytes bytes;
};

/// One look at the contents of another program: how long to bear with it. A program that did not answer in time once,
/// or answered half, is not asked again within the same look.
struct ClipboardLook {
    /// The contents that it is about.
    std::int64_t changeCount = 0;
    /// The server's time when it began.
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    /// The time that may still be spent on waiting.
    Duration patience{};
    bool isGivenUp = false;
};

/// Asks the program that owns the clipboard for its contents. What comes from there is believed in nothing: it may come
/// late, in part, in another place, or not at all. Main thread.
class ClipboardReader {
public:
    /// Both outlive the reader. `serve` is called while it waits.
    ClipboardReader(ClipboardSession& session, const ClipboardOwnership& ownership, std::function<void()> serve)
        : session_(session), ownership_(ownership), serve_(std::move(serve)) {}

    /// Begins a look at what is on the clipboard now.
    [[nodiscard]] ClipboardLook look();

    /// The contents for one target, or nothing where the owner has none or did not deliver.
    [[nodiscard]] std::optional<ReadTarget> read(ClipboardLook& look, xcb_atom_t target);

    void handle(const xcb_generic_event_t& event);

private:
    [[nodiscard]] bool isStillThere(const ClipboardLook& look) const;
    [[nodiscard]] bool waitFor(ClipboardLook& look, const std::function<bool()>& isReached);
    [[nodiscard]] std::optional<ReadTarget> readProperty(xcb_atom_t property);
    [[nodiscard]] std::optional<ReadTarget> readIncrementally(ClipboardLook& look);
    void abandon(ClipboardLook& look);

    ClipboardSession& session_;
    const ClipboardOwnership& ownership_;
    std::function<void()> serve_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::optional<xcb_selection_notify_event_t> answer_;
    bool hasNewValue_ = false;
};

}  // namespace lomaris
