#include "platform/linux/x11/x11_input_clock.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace lomaris {

namespace {

/// Attempts to read the counters within one millisecond. A busy server may need several.
constexpr int mostReadings = 50;

using CounterReply = XReply<xcb_sync_query_counter_reply_t>;

std::uint64_t valueOf(const CounterReply& reply) {
    const xcb_sync_int64_t& value = reply->counter_value;
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(value.hi)) << 32U | value.lo;
}

/// Iterates over the SYSTEMCOUNTER items of a reply: identifier (4 bytes), resolution (8), length of the name (2),
/// name, padded to a multiple of 4. The iterator of libxcb-sync is wrong: it expects the name after the padding of its
/// struct.
class CounterReader {
public:
    explicit CounterReader(const xcb_sync_list_system_counters_reply_t& reply)
        : rest_(reinterpret_cast<const char*>(&reply) + sizeof reply, std::size_t{reply.length} * 4) {}

    /// Moves to the next counter. Returns false if there is none.
    [[nodiscard]] bool next() {
        if (rest_.size() < headSize) {
            return false;
        }
        std::uint16_t nameLength = 0;
        std::memcpy(&identifier_, rest_.data(), sizeof identifier_);
        std::memcpy(&nameLength, rest_.data() + headSize - sizeof nameLength, sizeof nameLength);
        name_ = rest_.substr(headSize, nameLength);
        const std::size_t size = (headSize + nameLength + 3) / 4 * 4;
        rest_.remove_prefix(std::min(size, rest_.size()));
        return name_.size() == nameLength;
    }

    [[nodiscard]] xcb_sync_counter_t identifier() const { return identifier_; }
    [[nodiscard]] std::string_view name() const { return name_; }

private:
    static constexpr std::size_t headSize = 14;

    std::string_view rest_;
    std::string_view name_;
    xcb_sync_counter_t identifier_ = 0;
};

}  // namespace

std::optional<std::uint32_t> X11InputClock::timeOfLastInput() {
    if (!areCountersSought_) {
        areCountersSought_ = true;
        counters_ = findCounters();
    }
    if (!counters_) {
        return std::nullopt;
    }
    const XcbSyncFunctions& sync = *xcbSyncFunctions();
    xcb_connection_t* const handle = connection_.handle();
    // IDLETIME is the time from the last input to the moment of the request. To know that moment, the server time must
    // be the same before and after.
    for (int reading = 0; reading < mostReadings; ++reading) {
        const auto beforeRequest = sync.query_counter(handle, counters_->serverTime);
        const auto idleRequest = sync.query_counter(handle, counters_->idleTime);
        const auto afterRequest = sync.query_counter(handle, counters_->serverTime);
        const CounterReply before = connection_.wait<xcb_sync_query_counter_reply_t>(beforeRequest);
        const CounterReply idle = connection_.wait<xcb_sync_query_counter_reply_t>(idleRequest);
        const CounterReply after = connection_.wait<xcb_sync_query_counter_reply_t>(afterRequest);
        if (!before || !idle || !after) {
            return std::nullopt;
        }
        if (valueOf(before) == valueOf(after)) {
            return static_cast<std::uint32_t>(valueOf(before) - valueOf(idle));
        }
    }
    return std::nullopt;
}

bool X11InputClock::prepareSync() {
    const XcbSyncFunctions* const sync = xcbSyncFunctions();
    if (sync == nullptr || !connection_.hasExtension("SYNC") || !connection_.prepareExtension(sync->id)) {
        return false;
    }
    const auto version = sync->initialize(connection_.handle(), 3, 1);
    return connection_.wait<xcb_sync_initialize_reply_t>(version) != nullptr;
}

std::optional<X11InputClock::Counters> X11InputClock::findCounters() {
    if (!connection_.isUsable() || !prepareSync()) {
        return std::nullopt;
    }
    const XcbSyncFunctions& sync = *xcbSyncFunctions();
    const auto list =
        connection_.wait<xcb_sync_list_system_counters_reply_t>(sync.list_system_counters(connection_.handle()));
    if (!list) {
        return std::nullopt;
    }
    Counters found;
    CounterReader counters(*list);
    while (counters.next()) {
        if (counters.name() == "SERVERTIME") {
            found.serverTime = counters.identifier();
        } else if (counters.name() == "IDLETIME") {
            found.idleTime = counters.identifier();
        }
    }
    return found.serverTime != 0 && found.idleTime != 0 ? std::optional(found) : std::nullopt;
}

}  // namespace lomaris
