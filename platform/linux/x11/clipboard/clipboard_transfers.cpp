#include "platform/linux/x11/clipboard/clipboard_transfers.h"

#include "platform/linux/process/monotonic_clock.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <string_view>

namespace lomaris {

namespace {

/// A reader that requests no piece for this long counts as gone.
constexpr Duration longestStall = std::chrono::seconds(10);

constexpr std::uint32_t ofReader = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

}  // namespace

void ClipboardTransfers::start(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                               SharedBytes bytes) {
    // Select the events before the property is set, as the reader may delete it at once.
    watch(window, ofReader);
    const auto size = static_cast<std::uint32_t>(std::min<std::size_t>(bytes->size(), 0x7fffffff));
    std::array<char, sizeof size> announced{};
    std::memcpy(announced.data(), &size, sizeof size);
    session_.setProperty(window, property, session_.names().incremental, 32, {announced.data(), announced.size()});
    transfers_.insert_or_assign({window, property}, Transfer{type, format, std::move(bytes), 0, monotonicNow()});
}

void ClipboardTransfers::handle(const xcb_generic_event_t& event) {
    switch (event.response_type) {
        case XCB_PROPERTY_NOTIFY: {
            const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (change.state == XCB_PROPERTY_DELETE) {
                sendNextPiece({change.window, change.atom});
            }
            return;
        }
        case XCB_DESTROY_NOTIFY:
            dropWindow(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
            return;
        case 0:
            // A request failed because the window no longer exists.
            dropWindow(reinterpret_cast<const xcb_generic_error_t&>(event).resource_id);
            return;
        default:
            return;
    }
}

void ClipboardTransfers::sendNextPiece(const Place& place) {
    const auto found = transfers_.find(place);
    if (found == transfers_.end()) {
        return;
    }
    Transfer& transfer = found->second;
    const std::string_view rest = std::string_view(*transfer.bytes).substr(transfer.offset);
    const std::string_view piece = rest.substr(0, session_.longestPiece());
    session_.setProperty(place.first, place.second, transfer.type, transfer.format, piece);
    transfer.offset += piece.size();
    transfer.lastProgress = monotonicNow();
    // An empty piece ends the transfer.
    if (piece.empty()) {
        drop(found);
    }
}

void ClipboardTransfers::dropWindow(xcb_window_t window) {
    for (auto transfer = transfers_.lower_bound({window, 0}); transfer != transfers_.end();) {
        if (transfer->first.first != window) {
            return;
        }
        transfer = transfers_.erase(transfer);
    }
}

void ClipboardTransfers::dropStalled() {
    const Moment now = monotonicNow();
    for (auto transfer = transfers_.begin(); transfer != transfers_.end();) {
        const bool isStalled = now - transfer->second.lastProgress > longestStall;
        transfer = isStalled ? drop(transfer) : std::next(transfer);
    }
}

ClipboardTransfers::Transfers::iterator ClipboardTransfers::drop(Transfers::iterator transfer) {
    const xcb_window_t window = transfer->first.first;
    const auto next = transfers_.erase(transfer);
    const auto other = transfers_.lower_bound({window, 0});
    if (other == transfers_.end() || other->first.first != window) {
        watch(window, XCB_EVENT_MASK_NO_EVENT);
    }
    return next;
}

void ClipboardTransfers::watch(xcb_window_t window, std::uint32_t events) {
    session_.xcb().change_window_attributes(session_.handle(), window, XCB_CW_EVENT_MASK, &events);
}

}  // namespace lomaris
