#include "platform/posix/process_streams.h"

#include "platform/posix/termination_signals.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/types.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>

namespace lomaris {

namespace {

constexpr std::size_t firstReadSize = 64UL * 1024;

/// If a stream is closed, opens a file in its place that only allows the opposite access. Must be called for the three
/// streams in ascending order, because `open` uses the lowest free number.
void occupyIfClosed(int descriptor, int uselessAccess) {
    if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
        static_cast<void>(open("/dev/null", uselessAccess));
    }
}

/// Waits until a non-blocking descriptor is ready again, or for a short time if the system cannot determine that.
void waitUntilReady(int descriptor, short events) {
    pollfd request{};
    request.fd = descriptor;
    request.events = events;
    if (poll(&request, 1, -1) > 0 && (request.revents & POLLNVAL) != 0) {
        // Some systems cannot poll some devices, and return POLLNVAL at once.
        constexpr int rest = 1;
        static_cast<void>(poll(nullptr, 0, rest));
    }
}

bool isTransient(int error) { return error == EINTR || error == EAGAIN || error == EWOULDBLOCK; }

/// Waits until the descriptor accepts bytes or the end of the process is requested; true for the former. Watches both,
/// because a signal just before a blocking write would not interrupt it.
bool waitUntilItTakesBytes(int descriptor, int terminationDescriptor) {
    std::array<pollfd, 2> requests{{{.fd = descriptor, .events = POLLOUT, .revents = 0},
                                    {.fd = terminationDescriptor, .events = POLLIN, .revents = 0}}};
    while (poll(requests.data(), requests.size(), -1) < 0 && errno == EINTR) {
    }
    return requests[1].revents == 0;
}

/// Writes `piece`, the front of `bytes`, with one call and removes what was written from `bytes`. True if the caller
/// should continue.
bool writePiece(int descriptor, std::string_view piece, std::string_view& bytes) {
    const ssize_t written = write(descriptor, piece.data(), piece.size());
    if (written >= 0) {
        bytes.remove_prefix(static_cast<std::size_t>(written));
        return true;
    }
    if (!isTransient(errno)) {
        return false;
    }
    if (const int termination = terminationDescriptor();
        termination >= 0 && !waitUntilItTakesBytes(descriptor, termination)) {
        return false;
    }
    waitUntilReady(descriptor, POLLOUT);
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

bool ProcessStreams::writeOutput(std::string_view bytes) {
    while (!bytes.empty()) {
        std::string_view piece = bytes;
        if (const int termination = terminationDescriptor(); termination >= 0) {
            if (!waitUntilItTakesBytes(STDOUT_FILENO, termination)) {
                return false;
            }
            // A pipe that is ready accepts this many bytes without blocking.
            piece = piece.substr(0, PIPE_BUF);
        }
        if (!writePiece(STDOUT_FILENO, piece, bytes)) {
            return false;
        }
    }
    return true;
}

void ProcessStreams::writeError(std::string_view bytes) {
    // Written as a whole, so that it is not mixed with the output of other programs. Not interrupted by a request to
    // end the process, because the text is short.
    while (!bytes.empty() && writePiece(STDERR_FILENO, bytes, bytes)) {
    }
}

}  // namespace lomaris
