#pragma once

#include "platform/linux/dbus/bus_message.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <variant>
#include <vector>

namespace lomaris {

/// How long a peer may take to answer one call. With the pauses of those who ask again, a hung application costs less
/// than two seconds.
inline constexpr std::chrono::milliseconds busCallDeadline{1100};

/// One argument of a call; a variant around a boolean is the only nested one that is needed.
struct BooleanVariant {
    bool value = false;
};
using BusArgument = std::variant<std::int32_t, const char*, std::string, BooleanVariant>;

/// A connection to a message bus on which many calls are under way at once.
///
/// A walk over the elements of another process lives from sending its questions without waiting for each answer. `call`
/// therefore only queues, with what to do with the reply; `finish` sends, waits and hands out the replies until nothing
/// is left, including the calls that the handlers make. A bounded number of calls is under way at a time, and each has
/// a deadline of its own from the moment it is sent. A peer that misses one counts as hung from then on: its calls are
/// answered with `cannotComplete` at once, so that a hung application costs one deadline and not one per question.
///
/// Nothing is ever started on behalf of a call. Main thread only.
class BusConnection {
public:
    using Handler = std::function<void(const BusReply&)>;

    /// Connects to the first answering bus of a list of addresses as D-Bus writes them; only local sockets are tried.
    /// Null where none answers within a deadline, or where the D-Bus library is missing.
    [[nodiscard]] static std::unique_ptr<BusConnection> open(const std::string& addresses);

    /// Takes the connection over.
    explicit BusConnection(sd_bus* connection);
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    ~BusConnection();

    /// Queues a call of a method. `handler` runs exactly once, inside `finish`, unless the call is abandoned.
    void call(const ObjectReference& object, const char* interface, const char* member,
              std::initializer_list<BusArgument> arguments, Handler handler);

    /// Queues a call that changes nothing. A question that waits for its answer already is not sent again: whoever asks
    /// it too gets the same answer. Nothing that changes what it asks for may be queued in between.
    void ask(const ObjectReference& object, const char* interface, const char* member,
             std::initializer_list<BusArgument> arguments, Handler handler);

    /// Queues the reading of a property, a question likewise.
    void getProperty(const ObjectReference& object, const char* interface, const char* property, Handler handler);

    /// Queues a call whose message the caller has built with `newCall`. A null message is answered with
    /// `invalidUIElement`.
    void call(BusMessage message, const std::string& peer, Handler handler);

    /// A call without its arguments, or null where a name or path is none.
    [[nodiscard]] BusMessage newCall(const ObjectReference& object, const char* interface, const char* member);

    /// Drops every call that has no answer yet, queued or under way; their handlers do not run. May be called from a
    /// handler.
    void abandon();

    /// Runs until every call is answered. Not to be called from a handler.
    void finish();

private:
    struct Call;

    static int onReply(sd_bus_message* message, void* call, sd_bus_error* error);

    [[nodiscard]] bool becomeReady();
    [[nodiscard]] bool advance();
    void sendWaiting();
    bool deliverAnswered();
    void answerOverdue();
    void answerCallsTo(const std::string& peer, AXError error);
    void disconnect();
    void waitForTraffic(std::chrono::steady_clock::time_point deadline);

    sd_bus* bus_;
    bool connected_ = true;
    std::deque<std::unique_ptr<Call>> waiting_;
    std::deque<std::unique_ptr<Call>> underWay_;
    std::deque<std::unique_ptr<Call>> answered_;
    /// The questions among the calls in `waiting_` and `underWay_`.
    std::unordered_map<std::string, Call*> questions_;
    std::unordered_set<std::string> hungPeers_;
    /// How often calls were dropped, so that whoever hands out an answer notices.
    std::size_t abandonments_ = 0;
};

}  // namespace lomaris
