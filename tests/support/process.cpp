#include "tests/support/process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <string_view>
#include <system_error>
#include <utility>

extern char** environ;

namespace lomaris::test {

namespace {

/// Closes a file descriptor on destruction.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        close();
        number_ = std::exchange(other.number_, -1);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    [[nodiscard]] int number() const { return number_; }
    void close() {
        if (number_ >= 0) {
            ::close(number_);
            number_ = -1;
        }
    }

private:
    int number_ = -1;
};

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

std::vector<std::string> environmentFor(const ProcessOptions& options) {
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view variable(*entry);
        bool replaced = false;
        for (const auto& [name, value] : options.environment) {
            replaced = replaced || variable.substr(0, variable.find('=')) == name;
        }
        if (!replaced) {
            variables.emplace_back(variable);
        }
    }
    for (const auto& [name, value] : options.environment) {
        if (value) {
            variables.push_back(name + "=" + *value);
        }
    }
    return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    for (auto& string : strings) {
        pointers.push_back(string.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// Writes standard input and reads the other two streams until the program has closed them.
void exchange(Descriptor input, Descriptor output, Descriptor error, std::string_view toWrite, ProcessResult& result) {
    fcntl(input.number(), F_SETFL, O_NONBLOCK);
    while (output.number() >= 0 || error.number() >= 0) {
        if (toWrite.empty()) {
            input.close();
        }
        std::array<pollfd, 3> waiting = {
            {{input.number(), POLLOUT, 0}, {output.number(), POLLIN, 0}, {error.number(), POLLIN, 0}}};
        poll(waiting.data(), waiting.size(), -1);
        if (waiting[0].revents != 0) {
            const ssize_t written = write(input.number(), toWrite.data(), toWrite.size());
            if (written > 0) {
                toWrite.remove_prefix(static_cast<std::size_t>(written));
            } else if (errno != EAGAIN) {
                toWrite = {};
            }
        }
        const auto collect = [](const pollfd& ready, Descriptor& from, std::string& into) {
            if (ready.revents == 0) {
                return;
            }
            std::array<char, 65536> buffer{};
            const ssize_t count = read(from.number(), buffer.data(), buffer.size());
            if (count > 0) {
                into.append(buffer.data(), static_cast<std::size_t>(count));
            } else {
                from.close();
            }
        };
        collect(waiting[1], output, result.output);
        collect(waiting[2], error, result.error);
    }
}

}  // namespace

/// The caller's ends of the program's standard streams.
struct StartedProcess::Streams {
    Descriptor input;
    Descriptor output;
    Descriptor error;
};

StartedProcess::StartedProcess(const std::vector<std::string>& commandLine, const ProcessOptions& options)
    : streams_(std::make_unique<Streams>()), input_(options.input) {
    std::signal(SIGPIPE, SIG_IGN);
    Pipe input = makePipe();
    Pipe output = makePipe();
    Pipe error = makePipe();

    if (options.readerGoesAway) {
        output.readEnd.close();
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.readEnd.number(), 0);
    if (options.outputFile) {
        posix_spawn_file_actions_addopen(&actions, 1, options.outputFile->c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    } else {
        posix_spawn_file_actions_adddup2(&actions, output.writeEnd.number(), 1);
    }
    posix_spawn_file_actions_adddup2(&actions, error.writeEnd.number(), 2);
    for (const int descriptor : options.closedDescriptors) {
        posix_spawn_file_actions_addclose(&actions, descriptor);
    }
    // The tool must handle closed pipes and termination itself, so it must not inherit this process's signal actions.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t defaults;
    sigemptyset(&defaults);
    for (const int signal : {SIGPIPE, SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&defaults, signal);
    }
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    std::vector<std::string> arguments = commandLine;
    std::vector<std::string> variables = environmentFor(options);
    pid_t process = 0;
    const int failure = posix_spawnp(&process, arguments.at(0).c_str(), &actions, &attributes,
                                     pointersTo(arguments).data(), pointersTo(variables).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) {
        throw std::system_error(failure, std::generic_category(), commandLine.at(0));
    }
    process_ = process;
    streams_->input = std::move(input.writeEnd);
    streams_->output = std::move(output.readEnd);
    streams_->error = std::move(error.readEnd);
}

StartedProcess::~StartedProcess() {
    if (process_ > 0) {
        kill();
        while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

void StartedProcess::kill() const { ::kill(process_, SIGKILL); }

ProcessResult StartedProcess::wait() {
    ProcessResult result;
    exchange(std::move(streams_->input), std::move(streams_->output), std::move(streams_->error), input_, result);
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return result;
}

ProcessResult runProcess(const std::vector<std::string>& commandLine, const ProcessOptions& options) {
    return StartedProcess(commandLine, options).wait();
}

std::vector<std::string> toolCommandLine(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), LOMARIS_TOOL);
    return arguments;
}

ProcessResult runTool(std::vector<std::string> arguments, const ProcessOptions& options) {
    return runProcess(toolCommandLine(std::move(arguments)), options);
}

}  // namespace lomaris::test
