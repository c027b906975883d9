#include "platform/linux/clipboard_reader.h"

#include "platform/linux/monotonic_clock.h"

#include <algorithm>
#include <chrono>

namespace lomaris {

namespace {

/// How long the owner may take for each step.
constexpr Duration longestStep = std::chrono::seconds(1);

/// How long all steps of one look may take.
constexpr Duration longestLook = std::chrono::seconds(10);

/// Contents beyond this are as good as none.
constexpr std::size_t mostBytes = std::size_t{512} * 1024 * 1024;

/// The part of a property that is fetched at once, in units of four bytes.
constexpr std::uint32_t part = 256 * 1024;

bool isUnit(std::uint8_t format) { return format == 8 || format == 16 || format == 32; }

}  // namespace

ClipboardLook ClipboardReader::look() {
    const std::optional<xcb_timestamp_t> now = session_.serverTime();
    // After the exchange with the server, which may have told of another owner.
    return {ownership_.changeCount(), now.value_or(XCB_CURRENT_TIME), longestLook, !now};
}

std::optional<ReadTarget> ClipboardReader::read(ClipboardLook& look, xcb_atom_t target) {
    if (look.isGivenUp || !isStillThere(look)) {
        return std::nullopt;
    }
    if (window_ == XCB_WINDOW_NONE) {
        window_ = session_.createWindow();
    }
    const ClipboardNames& names = session_.names();
    answer_.reset();
    session_.xcb().convert_selection(session_.handle(), window_, names.clipboard, target, names.transfer, look.time);
    const auto isAnswered = [this, target] { return answer_ && answer_->target == target; };
    if (!waitFor(look, isAnswered)) {
        abandon(look);
        return std::nullopt;
    }
    if (answer_->property != names.transfer) {
        return std::nullopt;
    }
    std::optional<ReadTarget> contents = readProperty(names.transfer);
    if (contents && contents->type == names.incremental) {
        contents = readIncrementally(look);
        if (!contents) {
            abandon(look);
        }
    }
    // The answer may have come from an owner that took over meanwhile; the server told of that first.
    return isStillThere(look) ? std::move(contents) : std::nullopt;
}

std::optional<ReadTarget> ClipboardReader::readIncrementally(ClipboardLook& look) {
    std::optional<ReadTarget> whole;
    for (;;) {
        if (!waitFor(look, [this] { return hasNewValue_; })) {
            return std::nullopt;
        }
        std::optional<ReadTarget> piece = readProperty(session_.names().transfer);
        if (!piece) {
            return std::nullopt;
        }
        const bool isLast = piece->bytes.empty();
        if (!whole) {
            whole = std::move(piece);
        } else if (!isLast) {
            if (piece->type != whole->type || piece->format != whole->format ||
                whole->bytes.size() + piece->bytes.size() > mostBytes) {
                return std::nullopt;
            }
            whole->bytes += piece->bytes;
        }
        if (isLast) {
            return whole;
        }
    }
}

/// Takes a property away, so that the owner may send the next piece.
std::optional<ReadTarget> ClipboardReader::readProperty(xcb_atom_t property) {
    hasNewValue_ = false;
    ReadTarget contents;
    std::uint32_t offset = 0;
    for (;;) {
        const auto reply = session_.connection().wait<xcb_get_property_reply_t>(session_.xcb().get_property(
            session_.handle(), 1, window_, property, XCB_GET_PROPERTY_TYPE_ANY, offset, part));
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
    // The answer comes from the owner, an event that a program sent.
    if ((event.response_type & 0x7F) == XCB_SELECTION_NOTIFY) {
        const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (answer.requestor == window_ && answer.selection == session_.names().clipboard) {
            answer_ = answer;
        }
    } else if (event.response_type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window == window_ && change.atom == session_.names().transfer &&
            change.state == XCB_PROPERTY_NEW_VALUE) {
            hasNewValue_ = true;
        }
    }
}

bool ClipboardReader::isStillThere(const ClipboardLook& look) const {
    return ownership_.changeCount() == look.changeCount;
}

bool ClipboardReader::waitFor(ClipboardLook& look, const std::function<bool()>& isReached) {
    const Moment begin = monotonicNow();
    bool isReachedInTime = false;
    const auto isOver = [&] {
        serve_();
        isReachedInTime = isReached();
        return isReachedInTime || !isStillThere(look);
    };
    static_cast<void>(session_.waitUntil(isOver, later(begin, std::min(longestStep, look.patience))));
    look.patience = std::max(look.patience - (monotonicNow() - begin), Duration::zero());
    return isReachedInTime;
}

void ClipboardReader::abandon(ClipboardLook& look) {
    look.isGivenUp = true;
    // What comes late arrives in a window that nobody looks at any more. It is not destroyed: the owner might end over
    // a window that is gone.
    window_ = XCB_WINDOW_NONE;
}

}  // namespace lomaris
