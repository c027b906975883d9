#include "platform/linux/x11/clipboard/clipboard_reader.h"

#include "platform/linux/x11/clipboard/progress_deadline.h"

#include <algorithm>
#include <chrono>

namespace lomaris {

namespace {

/// The timeout for all waits of one look together.
constexpr Duration longestLook = std::chrono::seconds(10);

/// The most conversions that may be pending at once.
constexpr std::size_t mostPending = 256;

/// The most windows of abandoned conversions that are kept.
constexpr std::size_t mostAbandoned = 4 * mostPending;

/// The size limit of one target. Larger contents count as missing.
constexpr std::size_t mostBytes = std::size_t{512} * 1024 * 1024;

/// The part of a property that is requested at once, in units of four bytes.
constexpr std::uint32_t part = 256 * 1024;

bool isUnit(std::uint8_t format) { return format == 8 || format == 16 || format == 32; }

}  // namespace

ClipboardLook ClipboardReader::look() {
    const std::optional<xcb_timestamp_t> now = session_.serverTime();
    // Read the change count after the round trip, which may have reported another owner.
    return {.changeCount = ownership_.changeCount(),
            .time = now.value_or(XCB_CURRENT_TIME),
            .patience = longestLook,
            .isGivenUp = !now};
}

std::optional<ReadTarget> ClipboardReader::read(ClipboardLook& look, xcb_atom_t target) {
    std::erase(look.unread, target);
    if (!isStillThere(look)) {
        return std::nullopt;
    }
    if (const auto collected = look.collected.find(target); collected != look.collected.end()) {
        return collected->second;
    }
    if (look.isGivenUp) {
        return std::nullopt;
    }
    const Moment begin = monotonicNow();
    const bool hasStalled = collect(look, target);
    look.patience = std::max(look.patience - (monotonicNow() - begin), Duration::zero());
    // The value may be that of a new owner. In that case the server has reported the new owner before the value.
    const auto collected = look.collected.find(target);
    if (!isStillThere(look) || collected == look.collected.end()) {
        return std::nullopt;
    }
    if (hasStalled) {
        return collected->second;
    }
    std::optional<ReadTarget> contents = std::move(collected->second);
    look.collected.erase(collected);
    return contents;
}

bool ClipboardReader::collect(ClipboardLook& look, xcb_atom_t target) {
    const Moment begin = monotonicNow();
    ProgressDeadline progress(begin, later(begin, look.patience));
    bool hasStalled = false;
    request(look, target, true);
    while (!pending_.empty() && isStillThere(look)) {
        bool hasProgressed = false;
        const auto isOver = [&] {
            serve_();
            hasProgressed = collectArrived(look, progress);
            return hasProgressed || !isStillThere(look);
        };
        if (!session_.waitUntil(isOver, progress.deadline())) {
            if (!progress.beginStall(monotonicNow())) {
                look.isGivenUp = true;
                break;
            }
            hasStalled = true;
        }
        if (hasStalled) {
            requestUnread(look);
        }
    }
    for (const Conversion& conversion : pending_) {
        abandon(conversion.window);
    }
    pending_.clear();
    return hasStalled;
}

void ClipboardReader::request(const ClipboardLook& look, xcb_atom_t target, bool isOldest) {
    const ClipboardNames& names = session_.names();
    pending_.push_back({.target = target, .window = takeWindow(), .isOldest = isOldest});
    session_.xcb().convert_selection(session_.handle(), pending_.back().window, names.clipboard, target, names.transfer,
                                     look.time);
}

void ClipboardReader::requestUnread(ClipboardLook& look) {
    const std::size_t count = std::min(look.unread.size(), mostPending - pending_.size());
    const auto end = look.unread.begin() + static_cast<std::ptrdiff_t>(count);
    std::for_each(look.unread.begin(), end, [&](xcb_atom_t target) { request(look, target, false); });
    look.unread.erase(look.unread.begin(), end);
}

bool ClipboardReader::collectArrived(ClipboardLook& look, ProgressDeadline& progress) {
    bool hasProgressed = false;
    for (auto conversion = pending_.begin(); conversion != pending_.end();) {
        const Outcome outcome = advance(*conversion);
        if (outcome == Outcome::nothingNew) {
            ++conversion;
            continue;
        }
        hasProgressed = true;
        progress.noteProgress(monotonicNow(), conversion->isOldest);
        if (outcome == Outcome::isUnderWay) {
            ++conversion;
            continue;
        }
        if (outcome == Outcome::ended) {
            freeWindows_.push_back(conversion->window);
        } else {
            abandon(conversion->window);
            conversion->pieces.reset();
        }
        look.collected.insert_or_assign(conversion->target, std::move(conversion->pieces));
        conversion = pending_.erase(conversion);
    }
    return hasProgressed;
}

ClipboardReader::Outcome ClipboardReader::advance(Conversion& conversion) {
    if (conversion.isIncremental) {
        return conversion.hasNewValue ? addPiece(conversion) : Outcome::nothingNew;
    }
    if (!conversion.reply) {
        return Outcome::nothingNew;
    }
    if (*conversion.reply == XCB_ATOM_NONE) {
        return Outcome::ended;
    }
    if (*conversion.reply != session_.names().transfer) {
        return Outcome::broken;
    }
    conversion.pieces = readProperty(conversion);
    if (!conversion.pieces) {
        return Outcome::broken;
    }
    if (conversion.pieces->type != session_.names().incremental) {
        return Outcome::ended;
    }
    conversion.pieces.reset();
    conversion.isIncremental = true;
    return Outcome::isUnderWay;
}

ClipboardReader::Outcome ClipboardReader::addPiece(Conversion& conversion) {
    std::optional<ReadTarget> piece = readProperty(conversion);
    if (!piece) {
        return Outcome::broken;
    }
    const bool isLast = piece->bytes.empty();
    std::optional<ReadTarget>& whole = conversion.pieces;
    if (!whole) {
        whole = std::move(piece);
    } else if (!isLast) {
        if (piece->type != whole->type || piece->format != whole->format ||
            whole->bytes.size() + piece->bytes.size() > mostBytes) {
            return Outcome::broken;
        }
        whole->bytes += piece->bytes;
    }
    return isLast ? Outcome::ended : Outcome::isUnderWay;
}

/// Reads and deletes the property. The deletion requests the next piece from the owner (ICCCM 2.7.2).
std::optional<ReadTarget> ClipboardReader::readProperty(Conversion& conversion) {
    conversion.hasNewValue = false;
    ReadTarget contents;
    std::uint32_t offset = 0;
    for (;;) {
        const auto reply = session_.connection().wait<xcb_get_property_reply_t>(
            session_.xcb().get_property(session_.handle(), 1, conversion.window, session_.names().transfer,
                                        XCB_GET_PROPERTY_TYPE_ANY, offset, part));
        if (!reply || reply->type == XCB_ATOM_NONE || !isUnit(reply->format)) {
            return std::nullopt;
        }
        const std::size_t size = std::size_t{reply->value_len} * (reply->format / 8U);
        if (size > std::size_t{reply->length} * 4 || contents.bytes.size() + size > mostBytes) {
            return std::nullopt;
        }
        contents.type = reply->type;
        contents.format = reply->format;
        contents.bytes.append(static_cast<const char*>(session_.xcb().get_property_value(reply.get())), size);
        if (reply->bytes_after == 0) {
            return contents;
        }
        offset += part;
    }
}

void ClipboardReader::handle(const xcb_generic_event_t& event) {
    // The owner sends this event with SendEvent, which sets the highest bit of the type.
    if ((event.response_type & 0x7F) == XCB_SELECTION_NOTIFY) {
        const auto& reply = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        const auto conversion = std::ranges::find(pending_, reply.requestor, &Conversion::window);
        if (conversion != pending_.end() && reply.selection == session_.names().clipboard &&
            reply.target == conversion->target) {
            conversion->reply = reply.property;
        }
    } else if (event.response_type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        const auto conversion = std::ranges::find(pending_, change.window, &Conversion::window);
        if (conversion != pending_.end() && change.atom == session_.names().transfer &&
            change.state == XCB_PROPERTY_NEW_VALUE) {
            conversion->hasNewValue = true;
        }
    }
}

bool ClipboardReader::isStillThere(const ClipboardLook& look) const {
    return ownership_.changeCount() == look.changeCount;
}

xcb_window_t ClipboardReader::takeWindow() {
    if (freeWindows_.empty()) {
        return session_.createWindow();
    }
    const xcb_window_t window = freeWindows_.back();
    freeWindows_.pop_back();
    return window;
}

void ClipboardReader::abandon(xcb_window_t window) {
    abandonedWindows_.push_back(window);
    if (abandonedWindows_.size() > mostAbandoned) {
        session_.xcb().destroy_window(session_.handle(), abandonedWindows_.front());
        abandonedWindows_.pop_front();
    }
}

}  // namespace lomaris
