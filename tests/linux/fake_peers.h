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

/// A message bus of its own for one test; ended with this object.
class PrivateBus {
public:
    /// Starts it; throws where that fails.
    PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    [[nodiscard]] const std::string& address() const { return address_; }

    /// Whether the program that it needs is installed.
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

/// A peer on the bus that answers what a test tells it, from a thread of its own. It is told everything before `start`.
/// What it was not told, it answers with the error for an unknown method.
class FakePeer {
public:
    /// Connects to the bus and owns these names there; throws where that fails.
    explicit FakePeer(const PrivateBus& bus, const std::vector<std::string>& names = {});
    FakePeer(const FakePeer&) = delete;
    FakePeer& operator=(const FakePeer&) = delete;
    ~FakePeer();

    /// The unique name (":1.3").
    [[nodiscard]] const std::string& name() const { return name_; }

    // `call` is the method with its interface, without the part of the latter that all of them share ("Text.GetText"),
    // or for a property "Get " and the same of the property ("Get Text.CaretOffset").

    void answer(const std::string& path, const std::string& call, Values values);
    void answerError(const std::string& path, const std::string& call, const std::string& error);
    /// Never answers.
    void hang(const std::string& path, const std::string& call);
    /// Leaves the bus instead of answering.
    void leave(const std::string& path, const std::string& call);
    /// Runs something else in the thread of the peer.
    void answerWith(const std::string& path, const std::string& call, std::function<Values()> values);

    void start();

    /// How many calls of this kind came in.
    [[nodiscard]] int callCount(const std::string& path, const std::string& call) const;
    [[nodiscard]] int callCount() const { return total_; }

    /// The arguments of each call of this kind, in order: numbers and quoted strings (`4, "text", 4`).
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
