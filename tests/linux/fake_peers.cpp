#include "tests/linux/fake_peers.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <string_view>

namespace lomaris::test {

namespace {

constexpr const char* busProgram = "/usr/bin/dbus-daemon";

void check(int result, const char* what) {
    if (result < 0) {
        throw std::runtime_error(std::string(what) + " failed: " + std::to_string(result));
    }
}

/// Reads one line from a pipe, without the line feed.
std::string readLine(int descriptor) {
    std::string line;
    char byte = 0;
    while (read(descriptor, &byte, 1) == 1 && byte != '\n') {
        line.push_back(byte);
    }
    return line;
}

/// Becomes the bus, which writes its address to `announcements`. It ends with the test, even if the test crashes, and
/// keeps none of the test's streams open.
[[noreturn]] void runBus(int announcements) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(announcements, STDERR_FILENO + 1);
    // If both descriptors were equal, dup2 would not clear FD_CLOEXEC.
    fcntl(STDERR_FILENO + 1, F_SETFD, 0);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        dup2(nowhere, stream);
    }
    execl(busProgram, busProgram, "--session", "--nofork", "--print-address=3", nullptr);
    _exit(1);
}

/// The name of a call as the tests write it.
std::string callName(sd_bus_message* call) {
    constexpr std::string_view prefix = "org.a11y.atspi.";
    const auto shortened = [prefix](std::string name) {
        return name.starts_with(prefix) ? name.substr(prefix.size()) : name;
    };
    const std::string interface = sd_bus_message_get_interface(call);
    const std::string member = sd_bus_message_get_member(call);
    if (interface != "org.freedesktop.DBus.Properties") {
        return shortened(interface) + "." + member;
    }
    const char* of = nullptr;
    const char* property = nullptr;
    check(sd_bus_message_read(call, "ss", &of, &property), "reading a property call");
    return member + " " + shortened(of) + "." + property;
}

}  // namespace

bool PrivateBus::isAvailable() { return access(busProgram, X_OK) == 0; }

PrivateBus::PrivateBus() {
    std::array<int, 2> pipeEnds{};
    check(pipe2(pipeEnds.data(), O_CLOEXEC), "pipe2");
    process_ = fork();
    check(process_, "fork");
    if (process_ == 0) {
        runBus(pipeEnds[1]);
    }
    close(pipeEnds[1]);
    address_ = readLine(pipeEnds[0]);
    close(pipeEnds[0]);
    if (address_.empty()) {
        throw std::runtime_error("the bus did not start");
    }
}

PrivateBus::~PrivateBus() {
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
}

Values nothing() {
    return [](sd_bus_message*) {};
}
Values boolean(bool value) {
    return [value](sd_bus_message* reply) { sd_bus_message_append(reply, "b", value ? 1 : 0); };
}
Values integer(std::int32_t value) {
    return [value](sd_bus_message* reply) { sd_bus_message_append(reply, "i", value); };
}
Values integers(std::int32_t first, std::int32_t second) {
    return [first, second](sd_bus_message* reply) { sd_bus_message_append(reply, "ii", first, second); };
}
Values unsignedInteger(std::uint32_t value) {
    return [value](sd_bus_message* reply) { sd_bus_message_append(reply, "u", value); };
}
Values string(std::string value) {
    return [value = std::move(value)](sd_bus_message* reply) { sd_bus_message_append(reply, "s", value.c_str()); };
}
Values strings(std::vector<std::string> values) {
    return [values = std::move(values)](sd_bus_message* reply) {
        sd_bus_message_open_container(reply, 'a', "s");
        for (const std::string& value : values) {
            sd_bus_message_append(reply, "s", value.c_str());
        }
        sd_bus_message_close_container(reply);
    };
}
Values states(std::uint64_t bits) {
    return [bits](sd_bus_message* reply) {
        sd_bus_message_append(reply, "au", 2, static_cast<std::uint32_t>(bits), static_cast<std::uint32_t>(bits >> 32));
    };
}
Values integerProperty(std::int32_t value) {
    return [value](sd_bus_message* reply) { sd_bus_message_append(reply, "v", "i", value); };
}
Values numberProperty(double value) {
    return [value](sd_bus_message* reply) { sd_bus_message_append(reply, "v", "d", value); };
}
Values stringProperty(std::string value) {
    return [value = std::move(value)](sd_bus_message* reply) { sd_bus_message_append(reply, "v", "s", value.c_str()); };
}
Values booleanProperty(bool value) {
    return [value](sd_bus_message* reply) { sd_bus_message_append(reply, "v", "b", value ? 1 : 0); };
}
Values referenceProperty(std::string name, std::string path) {
    return [name = std::move(name), path = std::move(path)](sd_bus_message* reply) {
        sd_bus_message_append(reply, "v", "(so)", name.c_str(), path.c_str());
    };
}
Values references(std::vector<std::pair<std::string, std::string>> values) {
    return [values = std::move(values)](sd_bus_message* reply) {
        sd_bus_message_open_container(reply, 'a', "(so)");
        for (const auto& [name, path] : values) {
            sd_bus_message_append(reply, "(so)", name.c_str(), path.c_str());
        }
        sd_bus_message_close_container(reply);
    };
}

namespace {

/// The leading arguments of a call that are numbers or strings.
std::string argumentsOf(sd_bus_message* call) {
    std::string arguments;
    for (;;) {
        std::int32_t number = 0;
        const char* text = nullptr;
        std::string argument;
        if (sd_bus_message_read_basic(call, SD_BUS_TYPE_INT32, &number) > 0) {
            argument = std::to_string(number);
        } else if (sd_bus_message_read_basic(call, SD_BUS_TYPE_STRING, static_cast<void*>(&text)) > 0) {
            argument = "\"" + std::string(text) + "\"";
        } else {
            return arguments;
        }
        arguments += arguments.empty() ? argument : ", " + argument;
    }
}

}  // namespace

FakePeer::FakePeer(const PrivateBus& bus, const std::vector<std::string>& names) {
    check(sd_bus_new(&bus_), "sd_bus_new");
    check(sd_bus_set_address(bus_, bus.address().c_str()), "sd_bus_set_address");
    check(sd_bus_set_bus_client(bus_, 1), "sd_bus_set_bus_client");
    check(sd_bus_start(bus_), "sd_bus_start");
    const char* uniqueName = nullptr;
    check(sd_bus_get_unique_name(bus_, &uniqueName), "sd_bus_get_unique_name");
    name_ = uniqueName;
    for (const std::string& name : names) {
        check(sd_bus_request_name(bus_, name.c_str(), 0), "sd_bus_request_name");
    }
    stopEvent_ = eventfd(0, EFD_CLOEXEC);
    check(stopEvent_, "eventfd");
}

FakePeer::~FakePeer() {
    if (thread_.joinable()) {
        eventfd_write(stopEvent_, 1);
        thread_.join();
    }
    close(stopEvent_);
    sd_bus_close_unref(bus_);
}

void FakePeer::answerWith(const std::string& path, const std::string& call, std::function<Values()> values) {
    actions_[{path, call}] = [values = std::move(values)](sd_bus_message* message) {
        sd_bus_message* reply = nullptr;
        check(sd_bus_message_new_method_return(message, &reply), "sd_bus_message_new_method_return");
        values()(reply);
        sd_bus_send(nullptr, reply, nullptr);
        sd_bus_message_unref(reply);
    };
}

void FakePeer::answer(const std::string& path, const std::string& call, Values values) {
    answerWith(path, call, [values = std::move(values)] { return values; });
}

void FakePeer::answerError(const std::string& path, const std::string& call, const std::string& error) {
    actions_[{path, call}] = [error](sd_bus_message* message) {
        sd_bus_reply_method_errorf(message, error.c_str(), "told so");
    };
}

void FakePeer::hang(const std::string& path, const std::string& call) {
    actions_[{path, call}] = [](sd_bus_message*) {};
}

void FakePeer::leave(const std::string& path, const std::string& call) {
    actions_[{path, call}] = [this](sd_bus_message*) { isLeaving_ = true; };
}

void FakePeer::start() {
    check(sd_bus_add_filter(bus_, nullptr, &FakePeer::onMessage, this), "sd_bus_add_filter");
    thread_ = std::thread([this] { serve(); });
}

int FakePeer::callCount(const std::string& path, const std::string& call) const {
    const std::lock_guard lock(mutex_);
    const auto found = calls_.find({path, call});
    return found == calls_.end() ? 0 : static_cast<int>(found->second.size());
}

std::vector<std::string> FakePeer::arguments(const std::string& path, const std::string& call) const {
    const std::lock_guard lock(mutex_);
    const auto found = calls_.find({path, call});
    return found == calls_.end() ? std::vector<std::string>() : found->second;
}

int FakePeer::onMessage(sd_bus_message* message, void* peer, sd_bus_error* /*error*/) {
    if (sd_bus_message_is_method_call(message, nullptr, nullptr) <= 0) {
        return 0;
    }
    static_cast<FakePeer*>(peer)->take(message);
    return 1;
}

void FakePeer::take(sd_bus_message* call) {
    const Key key{sd_bus_message_get_path(call), callName(call)};
    ++total_;
    {
        const std::lock_guard lock(mutex_);
        calls_[key].push_back(argumentsOf(call));
    }
    const auto action = actions_.find(key);
    if (action == actions_.end()) {
        sd_bus_reply_method_errorf(call, "org.freedesktop.DBus.Error.UnknownMethod", "not told");
        return;
    }
    action->second(call);
}

void FakePeer::serve() {
    while (!isLeaving_) {
        if (sd_bus_process(bus_, nullptr) > 0) {
            continue;
        }
        std::array<pollfd, 2> descriptors{pollfd{sd_bus_get_fd(bus_), static_cast<short>(sd_bus_get_events(bus_)), 0},
                                          pollfd{stopEvent_, POLLIN, 0}};
        poll(descriptors.data(), descriptors.size(), -1);
        if (descriptors[1].revents != 0) {
            return;
        }
    }
    sd_bus_close(bus_);
}

}  // namespace lomaris::test
