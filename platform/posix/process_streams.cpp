#include "platform/posix/process_streams.h"

#include "platform/posix/termination_signals.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>

namespace lomaris {

namespace {

constexpr std::size_t firstReadSize = 64UL * 1024;

/// Takes the number of a stream that came closed with a file that only allows the opposite of what the stream is for.
/// The three are looked at in ascending order, so that `open` gives the number that is missing.
void occupyIfClosed(int descriptor, int uselessAccess) {
    if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
        static_cast<void>(open("/dev/null", uselessAccess));
    }
}

/// Waits until a descriptor that does not block is ready again.
void waitUntilReady(int descriptor, short events) {
    pollfd request{};
    request.fd = descriptor;
    request.events = events;
    static_cast<void>(poll(&request, 1, -1));
}

bool isTransient(int error) { return error == EINTR || error == EAGAIN || error == EWOULDBLOCK; }

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (isTransient(errno) && !isTerminationPending()) {
            waitUntilReady(descriptor, POLLOUT);
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace

ProcessStreams::ProcessStreams() {
    occupyIfClosed(STDIN_FILENO, O_WRONLY);
    occupyIfClosed(STDOUT_FILENO, O_RDONLY);
    occupyIfClosed(STDERR_FILENO, O_RDONLY);
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
}

std::optional<std::string> ProcessStreams::readInput() {
    std::string input;
    std::size_t length = 0;
    for (;;) {
        if (length == input.size()) {
            input.resize(input.empty() ? firstReadSize : input.size() * 2);
        }
        const ssize_t count = read(STDIN_FILENO, input.data() + length, input.size() - length);
        if (count == 0) {
            input.resize(length);
            return input;
        }
        if (count > 0) {
            length += static_cast<std::size_t>(count);
        } else if (isTransient(errno)) {
            waitUntilReady(STDIN_FILENO, POLLIN);
        } else {
            return std::nullopt;
        }
    }
}

bool ProcessStreams::writeOutput(std::string_view bytes) { return writeAll(STDOUT_FILENO, bytes); }

void ProcessStreams::writeError(std::string_view bytes) { static_cast<void>(writeAll(STDERR_FILENO, bytes)); }

}  // namespace lomaris
