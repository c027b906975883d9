#include "platform/linux/dbus/bus_connection.h"

#include <poll.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace lomaris {

namespace {

using Clock = std::chrono::steady_clock;

/// Enough calls to keep an application busy during a walk while replies are in transit. Few enough that an application
/// that works replies to all of them well before their deadlines.
constexpr std::size_t maximumUnderWay = 512;

const DBusFunctions& bus() { return *dbusFunctions(); }

/// Returns the `unix:` addresses of the list. Other transports may start a program or use a network.
std::vector<std::string> localAddresses(std::string_view addresses) {
    std::vector<std::string> result;
    while (!addresses.empty()) {
        const std::size_t end = std::min(addresses.find(';'), addresses.size());
        const std::string_view address = addresses.substr(0, end);
        if (address.starts_with("unix:")) {
            result.emplace_back(address);
        }
        addresses.remove_prefix(std::min(end + 1, addresses.size()));
    }
    return result;
}

/// Returns a key that is equal for identical requests.
std::string questionOf(const ObjectReference& object, const char* interface, const char* member,
                       std::initializer_list<BusArgument> arguments) {
    constexpr char separator = '\n';
    std::string question = object.name + separator + object.path + separator + interface + separator + member;
    for (const BusArgument& argument : arguments) {
        question += separator;
        if (const auto* const number = std::get_if<std::int32_t>(&argument)) {
            question += std::to_string(*number);
        } else if (const auto* const literal = std::get_if<const char*>(&argument)) {
            question += *literal;
        } else if (const auto* const text = std::get_if<std::string>(&argument)) {
            question += *text;
        } else {
            question += std::get<BooleanVariant>(argument).value ? "true" : "false";
        }
    }
    return question;
}

bool append(sd_bus_message* message, const BusArgument& argument) {
    if (const auto* const number = std::get_if<std::int32_t>(&argument)) {
        return bus().message_append_basic_(message, SD_BUS_TYPE_INT32, number) >= 0;
    }
    if (const auto* const literal = std::get_if<const char*>(&argument)) {
        return bus().message_append_basic_(message, SD_BUS_TYPE_STRING, *literal) >= 0;
    }
    if (const auto* const text = std::get_if<std::string>(&argument)) {
        return bus().message_append_basic_(message, SD_BUS_TYPE_STRING, text->c_str()) >= 0;
    }
    const int value = std::get<BooleanVariant>(argument).value ? 1 : 0;
    return bus().message_open_container_(message, SD_BUS_TYPE_VARIANT, "b") >= 0 &&
           bus().message_append_basic_(message, SD_BUS_TYPE_BOOLEAN, &value) >= 0 &&
           bus().message_close_container_(message) >= 0;
}

}  // namespace

/// One call from when it is queued until its handlers have run.
struct BusConnection::Call {
    std::string peer;
    BusMessage message;
    std::vector<Handler> handlers;
    /// The key of `questionOf` if the call was queued by `ask`, otherwise empty.
    std::string question;
    sd_bus_slot* slot = nullptr;
    Clock::time_point deadline;
    std::unique_ptr<BusReply> reply;

    Call(std::string toPeer, BusMessage toSend, Handler onAnswer)
        : peer(std::move(toPeer)), message(std::move(toSend)) {
        handlers.push_back(std::move(onAnswer));
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call() { bus().slot_unref_(slot); }

    void answer(AXError error) {
        if (reply == nullptr) {
            reply = std::make_unique<BusReply>(error);
        }
    }
};

std::unique_ptr<BusConnection> BusConnection::open(const std::string& addresses) {
    if (dbusFunctions() == nullptr) {
        return nullptr;
    }
    for (const std::string& address : localAddresses(addresses)) {
        sd_bus* connection = nullptr;
        if (bus().new_(&connection) < 0) {
            return nullptr;
        }
        auto result = std::make_unique<BusConnection>(connection);
        if (bus().set_address_(connection, address.c_str()) >= 0 && bus().set_bus_client_(connection, 1) >= 0 &&
            bus().start_(connection) >= 0 && result->becomeReady()) {
            return result;
        }
    }
    return nullptr;
}

BusConnection::BusConnection(sd_bus* connection) : bus_(connection) {}

BusConnection::~BusConnection() {
    abandon();
    bus().close_unref_(bus_);
}

/// Completes the handshake, for which libsystemd would allow far more time. Returns false on an error or a timeout.
bool BusConnection::becomeReady() {
    const auto deadline = Clock::now() + busCallDeadline;
    while (bus().is_ready_(bus_) <= 0) {
        const int progress = bus().process_(bus_, nullptr);
        if (progress < 0 || Clock::now() >= deadline) {
            return false;
        }
        if (progress == 0) {
            waitForTraffic(deadline);
        }
    }
    return true;
}

BusMessage BusConnection::newCall(const ObjectReference& object, const char* interface, const char* member) {
    sd_bus_message* message = nullptr;
    if (bus().message_new_method_call_(bus_, &message, object.name.c_str(), object.path.c_str(), interface, member) <
        0) {
        return nullptr;
    }
    BusMessage result(message);
    return bus().message_set_auto_start_(message, 0) >= 0 ? std::move(result) : nullptr;
}

void BusConnection::call(const ObjectReference& object, const char* interface, const char* member,
                         std::initializer_list<BusArgument> arguments, Handler handler) {
    BusMessage message = newCall(object, interface, member);
    for (const BusArgument& argument : arguments) {
        if (message != nullptr && !append(message.get(), argument)) {
            message.reset();
        }
    }
    call(std::move(message), object.name, std::move(handler));
}

void BusConnection::ask(const ObjectReference& object, const char* interface, const char* member,
                        std::initializer_list<BusArgument> arguments, Handler handler) {
    std::string question = questionOf(object, interface, member, arguments);
    if (const auto asked = questions_.find(question); asked != questions_.end()) {
        asked->second->handlers.push_back(std::move(handler));
        return;
    }
    call(object, interface, member, arguments, std::move(handler));
    waiting_.back()->question = question;
    questions_.emplace(std::move(question), waiting_.back().get());
}

void BusConnection::getProperty(const ObjectReference& object, const char* interface, const char* property,
                                Handler handler) {
    ask(object, "org.freedesktop.DBus.Properties", "Get", {interface, property}, std::move(handler));
}

void BusConnection::call(BusMessage message, const std::string& peer, Handler handler) {
    waiting_.push_back(std::make_unique<Call>(peer, std::move(message), std::move(handler)));
}

void BusConnection::finish() {
    while (!waiting_.empty() || !underWay_.empty()) {
        sendWaiting();
        const bool progress = advance();
        answerOverdue();
        if (!deliverAnswered() && !progress && !underWay_.empty()) {
            waitForTraffic(underWay_.front()->deadline);
        }
    }
}

void BusConnection::abandon() {
    ++abandonments_;
    questions_.clear();
    waiting_.clear();
    underWay_.clear();
    answered_.clear();
}

int BusConnection::onReply(sd_bus_message* message, void* call, sd_bus_error* /*error*/) {
    static_cast<Call*>(call)->reply = std::make_unique<BusReply>(BusMessage(bus().message_ref_(message)));
    return 0;
}

/// Lets libsystemd read, write or dispatch one message. Returns false if there was nothing to do.
bool BusConnection::advance() {
    if (!connected_) {
        return false;
    }
    const int progress = bus().process_(bus_, nullptr);
    if (progress < 0) {
        disconnect();
    }
    return progress != 0;
}

void BusConnection::sendWaiting() {
    while (!waiting_.empty() && underWay_.size() < maximumUnderWay) {
        underWay_.push_back(std::move(waiting_.front()));
        waiting_.pop_front();
        Call& call = *underWay_.back();
        call.deadline = Clock::now() + busCallDeadline;
        if (!connected_ || call.message == nullptr) {
            call.answer(AXError::invalidUIElement);
        } else if (hungPeers_.contains(call.peer)) {
            call.answer(AXError::cannotComplete);
        } else if (bus().call_async_(bus_, &call.slot, call.message.get(), &BusConnection::onReply, &call, UINT64_MAX) <
                   0) {
            call.slot = nullptr;
            call.answer(AXError::failure);
        }
    }
}

/// Runs the handlers of the completed calls, which may queue calls. Returns whether there was a completed call.
bool BusConnection::deliverAnswered() {
    for (auto& call : underWay_) {
        if (call->reply != nullptr) {
            questions_.erase(call->question);
            answered_.push_back(std::move(call));
        }
    }
    std::erase(underWay_, nullptr);
    const bool hasAnswers = !answered_.empty();
    while (!answered_.empty()) {
        const std::unique_ptr<Call> call = std::move(answered_.front());
        answered_.pop_front();
        const std::size_t abandonments = abandonments_;
        for (const Handler& handler : call->handlers) {
            if (abandonments != abandonments_) {
                break;
            }
            handler(*call->reply);
            call->reply->rewind();
        }
    }
    return hasAnswers;
}

/// `underWay_` is in the order of the deadlines.
void BusConnection::answerOverdue() {
    const auto now = Clock::now();
    for (const auto& call : underWay_) {
        if (call->deadline > now) {
            break;
        }
        if (call->reply == nullptr && hungPeers_.insert(call->peer).second) {
            answerCallsTo(call->peer, AXError::cannotComplete);
        }
    }
}

void BusConnection::answerCallsTo(const std::string& peer, AXError error) {
    for (const auto& call : underWay_) {
        if (call->peer == peer) {
            call->answer(error);
        }
    }
}

void BusConnection::disconnect() {
    connected_ = false;
    for (const auto& call : underWay_) {
        call->answer(AXError::invalidUIElement);
    }
}

void BusConnection::waitForTraffic(Clock::time_point deadline) {
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (remaining.count() <= 0) {
        return;
    }
    const int events = bus().get_events_(bus_);
    pollfd descriptor{bus().get_fd_(bus_), static_cast<short>(std::max(events, 0)), 0};
    poll(&descriptor, 1, static_cast<int>(remaining.count()));
}

}  // namespace lomaris
