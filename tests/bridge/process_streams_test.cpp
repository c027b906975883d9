#include "platform/posix/process_streams.h"

#include "platform/posix/termination_signals.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <string>
#include <system_error>
#include <vector>

namespace lomaris {
namespace {

/// While it lives, standard error is a socket that keeps every write apart.
class WatchedError {
public:
    WatchedError() {
        if (socketpair(AF_UNIX, SOCK_DGRAM, 0, ends_.data()) != 0) {
            throw std::system_error(errno, std::generic_category(), "socketpair");
        }
        dup2(ends_[1], STDERR_FILENO);
    }
    WatchedError(const WatchedError&) = delete;
    WatchedError& operator=(const WatchedError&) = delete;
    ~WatchedError() {
        dup2(kept_, STDERR_FILENO);
        for (const int descriptor : {kept_, ends_[0], ends_[1]}) {
            close(descriptor);
        }
    }

    /// What was written, each write a text of its own.
    [[nodiscard]] std::vector<std::string> writes() const {
        std::vector<std::string> writes;
        std::string buffer(4UL * PIPE_BUF, ' ');
        for (;;) {
            const ssize_t length = recv(ends_[0], buffer.data(), buffer.size(), MSG_DONTWAIT);
            if (length < 0) {
                return writes;
            }
            writes.push_back(buffer.substr(0, static_cast<std::size_t>(length)));
        }
    }

private:
    std::array<int, 2> ends_{};
    int kept_ = dup(STDERR_FILENO);
};

const std::string longLine = std::string(PIPE_BUF + 100, 'x') + "\n";

TEST(ProcessStreams, WriteAnErrorInOnePiece) {
    const WatchedError error;
    ProcessStreams().writeError(longLine);
    EXPECT_EQ(error.writes(), std::vector{longLine});
}

TEST(ProcessStreams, WriteAnErrorInOnePieceAlsoWhileSignalsAreCaught) {
    const TerminationSignals signals;
    const WatchedError error;
    ProcessStreams().writeError(longLine);
    EXPECT_EQ(error.writes(), std::vector{longLine});
}

TEST(ProcessStreams, WriteAnErrorAlsoWhenTheProcessIsToEnd) {
    const TerminationSignals signals;
    const WatchedError error;
    raise(SIGTERM);
    ProcessStreams().writeError("told to end\n");
    EXPECT_EQ(error.writes(), std::vector<std::string>{"told to end\n"});
}

}  // namespace
}  // namespace lomaris
