#pragma once

#include "platform/linux/x11/clipboard/clipboard_ownership.h"
#include "platform/pasteboard.h"

#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace lomaris {

class ProgressDeadline;

/// The value that a selection owner delivered for one target.
struct ReadTarget {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 8;
    Bytes bytes;
};

/// The state of reading the contents of one selection owner.
struct ClipboardLook {
    /// The change count of the contents.
    std::int64_t changeCount = 0;
    /// The server time at the beginning, for ConvertSelection (ICCCM 2.4).
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    /// The time that may still be spent on waiting.
    Duration patience{};
    /// True after a conversion was not delivered in time. No more conversions are requested then.
    bool isGivenUp = false;
    /// The targets to request together if the owner stalls, except those read before. Set by the caller.
    std::vector<xcb_atom_t> unread{};
    /// The results of conversions that ended during or after a stall; nullopt for a target that the owner refused.
    std::unordered_map<xcb_atom_t, std::optional<ReadTarget>> collected{};
};

/// Reads the contents of the clipboard from their owner (ICCCM 2.4, INCR: 2.7.2). Validates everything that the owner
/// sends: it may be late, incomplete, in another property, or missing.
///
/// Targets are requested one after the other while the owner delivers. When it stalls (see `ProgressDeadline`), all
/// unread targets are requested at once, and replies and pieces are collected in any order.
///
/// Each pending conversion has its own requestor window. A window is reused only after a conversion that ended
/// properly, so that a late reply is never mistaken for the reply of another conversion. Windows of abandoned
/// conversions are not destroyed at once, as that may make the owner fail: the latest 1024 are kept, four times as many
/// as may be pending. Main thread.
class ClipboardReader {
public:
    /// `session` and `ownership` must outlive the reader. `serve` is called during waits.
    ClipboardReader(ClipboardSession& session, const ClipboardOwnership& ownership, std::function<void()> serve)
        : session_(session), ownership_(ownership), serve_(std::move(serve)) {}

    /// Begins to read the current contents.
    [[nodiscard]] ClipboardLook look();

    /// Reads one target. nullopt if the owner refuses, does not deliver, or is no longer the owner. Blocks for up to 10
    /// s per look, usually much less.
    [[nodiscard]] std::optional<ReadTarget> read(ClipboardLook& look, xcb_atom_t target);

    void handle(const xcb_generic_event_t& event);

private:
    /// A pending conversion.
    struct Conversion {
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_window_t window = XCB_WINDOW_NONE;
        /// True if it was requested before a stall.
        bool isOldest = false;
        /// The property in the owner's SelectionNotify event; nullopt before it arrives.
        std::optional<xcb_atom_t> reply{};
        /// True if the property has a value that has not been read.
        bool hasNewValue = false;
        bool isIncremental = false;
        /// The value received so far.
        std::optional<ReadTarget> pieces{};
    };

    enum class Outcome : std::uint8_t {
        nothingNew,
        isUnderWay,
        /// The owner has delivered the value or refused the target.
        ended,
        /// The owner has replied, but the value is missing or not valid.
        broken,
    };

    /// Reads the target, and all unread ones if the owner stalls, into `look.collected`. Returns true if it stalled.
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
    /// In the order of the ConvertSelection requests.
    std::deque<Conversion> pending_;
    std::vector<xcb_window_t> freeWindows_;
    std::deque<xcb_window_t> abandonedWindows_;
};

}  // namespace lomaris
