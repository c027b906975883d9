#pragma once

#include "platform/linux/x11/clipboard/clipboard_ownership.h"
#include "platform/linux/x11/clipboard/clipboard_transfers.h"

#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace lomaris {

/// Replies to SelectionRequest events if this process is the selection owner (ICCCM 2.2). Queues the requests until
/// `serve`, as a reply may need a provider, which may be called only at certain times. Main thread.
class ClipboardServer {
public:
    /// Returns the current contents; null if another program owns the clipboard.
    using Contents = std::function<std::shared_ptr<ServedContents>()>;

    /// `session` and `ownership` must outlive the server.
    ClipboardServer(ClipboardSession& session, const ClipboardOwnership& ownership, Contents contents)
        : session_(session), ownership_(ownership), contents_(std::move(contents)), transfers_(session) {}

    void handle(const xcb_generic_event_t& event);

    /// Replies to the queued requests, without flushing the connection. Calls providers.
    void serve();

    /// True if there is an incremental transfer that its reader has not completed.
    [[nodiscard]] bool isTransferring() const { return !transfers_.isEmpty(); }

    void dropStalledTransfers() { transfers_.dropStalled(); }

private:
    using Request = xcb_selection_request_event_t;

    [[nodiscard]] bool isForUs(const Request& request) const;
    [[nodiscard]] bool answer(ServedContents& contents, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    [[nodiscard]] bool answerMultiple(ServedContents& contents, xcb_window_t requestor, xcb_atom_t property);
    [[nodiscard]] bool answerContents(ServedContents& contents, xcb_window_t requestor, xcb_atom_t target,
                                      xcb_atom_t property);
    void answerTargets(const ServedContents& contents, xcb_window_t requestor, xcb_atom_t property);
    [[nodiscard]] std::vector<xcb_atom_t> readPairs(xcb_window_t requestor, xcb_atom_t property);
    void notify(const Request& request, xcb_atom_t property);

    ClipboardSession& session_;
    const ClipboardOwnership& ownership_;
    Contents contents_;
    ClipboardTransfers transfers_;
    std::deque<Request> requests_;
};

}  // namespace lomaris
