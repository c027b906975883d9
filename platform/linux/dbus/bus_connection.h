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

/// The timeout of one call. Short enough that a caller that retries with pauses spends less than 2 s on a hung
/// application.
inline constexpr std::chrono::milliseconds busCallDeadline{1100};

/// A boolean inside a D-Bus variant, as `Properties.Set` takes it. No other variant is needed as an argument.
struct BooleanVariant {
    bool value = false;
};
/// One argument of a call. A `const char*` must be non-null and is copied when the call is queued.
using BusArgument = std::variant<std::int32_t, const char*, std::string, BooleanVariant>;

/// A connection to a D-Bus message bus with many pending calls at a time.
///
/// This folder is the D-Bus client of the Linux platform: connections (this header), replies (`bus_message.h`), errors
/// (`bus_error.h`) and the functions of libsystemd (`dbus_library.h`). `atspi/` is its only user. It depends on the
/// result codes of the platform and on libsystemd, which it opens at run time, and calls no AT-SPI interface itself.
///
/// A walk over the elements of another process is fast only if it does not wait for each reply before it sends the next
/// call. `call` therefore only queues a call with its handler; `finish` sends the queued calls, waits for the replies
/// and runs the handlers, until no call is left, including those that handlers queue.
///
/// Invariants:
/// 1. A handler runs only inside `finish`, exactly once, unless its call is abandoned.
/// 2. The number of pending calls is limited. Each has its own deadline, `busCallDeadline` after it was sent.
/// 3. A peer that misses a deadline counts as hung for the life of the connection: its calls complete with
///    `cannotComplete` at once. A hung application therefore costs one timeout, not one per call.
/// 4. If the connection is lost, all calls complete with `invalidUIElement`.
/// 5. No call starts a service (all have the flag NO_AUTO_START).
///
/// Main thread only.
class BusConnection {
public:
    using Handler = std::function<void(const BusReply&)>;

    /// Connects to the first bus of a D-Bus address list ("unix:path=/a;unix:path=/b") that completes the handshake
    /// within `busCallDeadline`. Only `unix:` addresses are tried. Null if there is none, or if libsystemd is missing.
    [[nodiscard]] static std::unique_ptr<BusConnection> open(const std::string& addresses);

    /// Takes ownership of the connection, which must be connected or connecting.
    explicit BusConnection(sd_bus* connection);
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    ~BusConnection();

    /// Queues a method call.
    void call(const ObjectReference& object, const char* interface, const char* member,
              std::initializer_list<BusArgument> arguments, Handler handler);

    /// Queues a method call without side effects. Identical pending requests share one reply, so the caller must not
    /// queue a call that changes the result between two of them.
    void ask(const ObjectReference& object, const char* interface, const char* member,
             std::initializer_list<BusArgument> arguments, Handler handler);

    /// Queues `org.freedesktop.DBus.Properties.Get`, in the same way as `ask`.
    void getProperty(const ObjectReference& object, const char* interface, const char* property, Handler handler);

    /// Queues a call whose message the caller has built with `newCall`. `peer` is the destination of the message. A
    /// null message completes with `invalidUIElement`.
    void call(BusMessage message, const std::string& peer, Handler handler);

    /// Returns a method call without arguments. Null if a name or the object path is not valid.
    [[nodiscard]] BusMessage newCall(const ObjectReference& object, const char* interface, const char* member);

    /// Drops every call whose handler has not run yet. A handler may call it.
    void abandon();

    /// Blocks until every call is complete. A handler must not call it.
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
    /// The calls queued by `ask` among those in `waiting_` and `underWay_`, by `Call::question`.
    std::unordered_map<std::string, Call*> questions_;
    std::unordered_set<std::string> hungPeers_;
    /// The number of calls of `abandon`, so that `deliverAnswered` notices one made by a handler.
    std::size_t abandonments_ = 0;
};

}  // namespace lomaris
