#pragma once

#include "platform/linux/x11/clipboard/clipboard_ownership.h"
#include "platform/pasteboard.h"

#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace lomaris {

class ProgressDeadline;

/// What another program delivered for one target.
struct ReadTarget {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 8;
    Bytes bytes;
};

/// One look at the contents of another program, and what it may still cost.
struct ClipboardLook {
    /// The contents that it is about.
    std::int64_t changeCount = 0;
    /// The server's time when it began.
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    /// The time that may still be spent on waiting.
    Duration patience{};
    /// True once a conversion was not delivered in time. Nothing is requested any more.
    bool isGivenUp = false;
    /// The targets that are requested together once the owner stalls, without those that were read. Set by the caller.
    std::vector<xcb_atom_t> unread{};
    /// The conversions that ended during or after a stall; empty for a target that the owner refused.
    std::unordered_map<xcb_atom_t, std::optional<ReadTarget>> collected{};
};

/// Requests the contents of the program that owns the clipboard. Nothing that it sends is trusted: it may come late, in
/// part, in another place, or not at all.
///
/// Targets are read one after the other while the owner delivers. Once it stalls (see `ProgressDeadline`), all targets
/// that are still unread are requested at once, and replies and pieces are collected in any order.
///
/// Each pending conversion has a requestor window of its own, and a window is used again only after a conversion that
/// ended properly, so that a late reply is never taken for that of another conversion. The windows of the others are
/// kept, as an owner might end over a window that is gone: the latest 1024 of this process, four times as many as may
/// be pending at once. Main thread.
class ClipboardReader {
public:
    /// Both outlive the reader. `serve` is called while it waits.
    ClipboardReader(ClipboardSession& session, const ClipboardOwnership& ownership, std::function<void()> serve)
        : session_(session), ownership_(ownership), serve_(std::move(serve)) {}

    /// Begins a look at what is on the clipboard now.
    [[nodiscard]] ClipboardLook look();

    /// The contents for one target; nullopt if the owner has none or did not deliver.
    [[nodiscard]] std::optional<ReadTarget> read(ClipboardLook& look, xcb_atom_t target);

    void handle(const xcb_generic_event_t& event);

private:
    /// A request that has not ended yet.
    struct Conversion {
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_window_t window = XCB_WINDOW_NONE;
        /// Whether it was requested before a stall.
        bool isOldest = false;
        /// The property of the reply, from its arrival on.
        std::optional<xcb_atom_t> reply{};
        /// Whether a property was set that has not been read.
        bool hasNewValue = false;
        bool isIncremental = false;
        /// The pieces so far.
        std::optional<ReadTarget> pieces{};
    };

    enum class Outcome : std::uint8_t {
        nothingNew,
        isUnderWay,
        /// Delivered or refused.
        ended,
        /// The reply has no contents, or no valid ones.
        broken,
    };

    /// Adds the target, and all unread ones if the owner stalls, to what is collected. True if it stalled.
    [[nodiscard]] bool collect(ClipboardLook& look, xcb_atom_t target);
    void request(const ClipboardLook& look, xcb_atom_t target, bool isOldest);
    void requestUnread(ClipboardLook& look);
    [[nodiscard]] bool collectArrived(ClipboardLook& look, ProgressDeadline& progress);
    [[nodiscard]] Outcome advance(Conversion& conversion);
    [[nodiscard]] Outcome addPiece(Conversion& conversion);
    [[nodiscard]] std::optional<ReadTarget> readProperty(Conversion& conversion);
    [[nodiscard]] bool isStillThere(const ClipboardLook& look) const;
    [[nodiscard]] xcb_window_t takeWindow();
    void abandon(xcb_window_t window);

    ClipboardSession& session_;
    const ClipboardOwnership& ownership_;
    std::function<void()> serve_;
    /// In the order of the requests.
    std::deque<Conversion> pending_;
    std::vector<xcb_window_t> freeWindows_;
    std::deque<xcb_window_t> abandonedWindows_;
};

}  // namespace lomaris
