#pragma once

#include <systemd/sd-bus.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace lomaris::test {

/// A message bus for one test. Ends with this object.
class PrivateBus {
public:
    /// Starts the bus. Throws if that fails.
    PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    [[nodiscard]] const std::string& address() const { return address_; }

    /// True if dbus-daemon is installed.
    [[nodiscard]] static bool isAvailable();

private:
    pid_t process_ = -1;
    std::string address_;
};

/// Appends the values of a reply.
using Values = std::function<void(sd_bus_message* reply)>;

[[nodiscard]] Values nothing();
[[nodiscard]] Values boolean(bool value);
[[nodiscard]] Values integer(std::int32_t value);
[[nodiscard]] Values integers(std::int32_t first, std::int32_t second);
[[nodiscard]] Values unsignedInteger(std::uint32_t value);
[[nodiscard]] Values string(std::string value);
[[nodiscard]] Values strings(std::vector<std::string> values);
[[nodiscard]] Values states(std::uint64_t bits);
[[nodiscard]] Values integerProperty(std::int32_t value);
[[nodiscard]] Values numberProperty(double value);
[[nodiscard]] Values stringProperty(std::string value);
[[nodiscard]] Values booleanProperty(bool value);
[[nodiscard]] Values referenceProperty(std::string name, std::string path);
[[nodiscard]] Values references(std::vector<std::pair<std::string, std::string>> values);

/// A peer on the bus that sends the replies set by a test, from its own thread. All replies must be set before `start`.
/// To any other call it replies with the error UnknownMethod.
class FakePeer {
public:
    /// Connects to the bus and requests these names. Throws if that fails.
    explicit FakePeer(const PrivateBus& bus, const std::vector<std::string>& names = {});
    FakePeer(const FakePeer&) = delete;
    FakePeer& operator=(const FakePeer&) = delete;
    ~FakePeer();

    /// The unique bus name (":1.3").
    [[nodiscard]] const std::string& name() const { return name_; }

    // `call` is the interface without "org.a11y.atspi." and the method ("Text.GetText"), or for a property "Get ", the
    // interface and the property ("Get Text.CaretOffset").

    void answer(const std::string& path, const std::string& call, Values values);
    void answerError(const std::string& path, const std::string& call, const std::string& error);
    /// Never replies.
    void hang(const std::string& path, const std::string& call);
    /// Disconnects from the bus instead of replying.
    void leave(const std::string& path, const std::string& call);
    /// Calls `values` on the thread of the peer and replies with the result.
    void answerWith(const std::string& path, const std::string& call, std::function<Values()> values);

    void start();

    /// The number of these calls that were received.
    [[nodiscard]] int callCount(const std::string& path, const std::string& call) const;
    [[nodiscard]] int callCount() const { return total_; }

    /// The arguments of each of these calls, in order: numbers and quoted strings (`4, "text", 4`).
    [[nodiscard]] std::vector<std::string> arguments(const std::string& path, const std::string& call) const;

private:
    using Action = std::function<void(sd_bus_message* call)>;
    using Key = std::pair<std::string, std::string>;

    static int onMessage(sd_bus_message* message, void* peer, sd_bus_error* error);

    void serve();
    void take(sd_bus_message* call);

    sd_bus* bus_ = nullptr;
    std::string name_;
    std::map<Key, Action> actions_;
    mutable std::mutex mutex_;
    std::map<Key, std::vector<std::string>> calls_;
    std::atomic<int> total_ = 0;
    bool isLeaving_ = false;
    int stopEvent_ = -1;
    std::thread thread_;
};

}  // namespace lomaris::test
