#include "platform/posix/process_streams.h"

#include "platform/posix/termination_signals.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <ctime>
#include <future>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

/// Replaces standard error by a socket that preserves the boundaries of writes, until destruction.
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

    /// Returns the writes so far, one element per write.
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

/// Replaces standard output by a pipe, until `restore` or destruction.
class WatchedOutput {
public:
    WatchedOutput() {
        if (pipe(ends_.data()) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        dup2(ends_[1], STDOUT_FILENO);
        close(ends_[1]);
    }
    WatchedOutput(const WatchedOutput&) = delete;
    WatchedOutput& operator=(const WatchedOutput&) = delete;
    ~WatchedOutput() {
        restore();
        close(ends_[0]);
    }

    void makeNonBlocking() const { fcntl(STDOUT_FILENO, F_SETFL, O_NONBLOCK); }

    /// Returns all written bytes. Blocks until standard output is restored.
    [[nodiscard]] std::string bytes() const {
        std::string all;
        std::string buffer(4096, ' ');
        for (ssize_t length = 0; (length = read(ends_[0], buffer.data(), buffer.size())) > 0;) {
            all.append(buffer, 0, static_cast<std::size_t>(length));
        }
        return all;
    }
    void restore() {
        if (kept_ >= 0) {
            dup2(kept_, STDOUT_FILENO);
            close(kept_);
            kept_ = -1;
        }
    }

private:
    std::array<int, 2> ends_{};
    int kept_ = dup(STDOUT_FILENO);
};

enum class Signals { caught, left };
enum class Writes { block, doNotBlock };

/// Returns the result of `writeOutput` and the bytes that a slower reader received.
std::pair<bool, std::string> written(const std::string& bytes, Signals signals, Writes writes) {
    std::optional<TerminationSignals> caught;
    if (signals == Signals::caught) {
        caught.emplace();
    }
    WatchedOutput output;
    if (writes == Writes::doNotBlock) {
        output.makeNonBlocking();
    }
    auto read = std::async(std::launch::async, [&output] { return output.bytes(); });
    const bool isWritten = ProcessStreams().writeOutput(bytes);
    output.restore();
    return {isWritten, read.get()};
}

std::string manyLines() {
    std::string lines;
    for (int number = 0; number < 100000; ++number) {
        lines += std::to_string(number) + "\n";
    }
    return lines;
}

TEST(ProcessStreams, WriteALongOutputCompletely) {
    const std::string lines = manyLines();
    for (const Signals signals : {Signals::caught, Signals::left}) {
        for (const Writes writes : {Writes::block, Writes::doNotBlock}) {
            // Not EXPECT_EQ, which would print all the bytes.
            EXPECT_TRUE(written(lines, signals, writes) == std::pair(true, lines));
        }
    }
}

/// Returns the processor time of the calling thread.
std::chrono::nanoseconds processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

TEST(ProcessStreams, UseNoProcessorTimeWhileWaitingForAReader) {
    WatchedOutput output;
    output.makeNonBlocking();
    const std::string lines = manyLines();
    auto used = std::async(std::launch::async, [&lines] {
        const auto before = processorTime();
        return ProcessStreams().writeOutput(lines) ? processorTime() - before : std::chrono::nanoseconds::max();
    });
    EXPECT_EQ(used.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
    auto read = std::async(std::launch::async, [&output] { return output.bytes(); });
    // A few writes take some microseconds; a writer that polled would use most of the 200 ms.
    EXPECT_LT(used.get(), std::chrono::milliseconds(15));
    output.restore();
    EXPECT_TRUE(read.get() == lines);
}

TEST(ProcessStreams, DoNotWaitForAReaderAfterATerminationSignal) {
    for (const Writes writes : {Writes::block, Writes::doNotBlock}) {
        const TerminationSignals signals;
        const WatchedOutput output;
        if (writes == Writes::doNotBlock) {
            output.makeNonBlocking();
        }
        auto written = std::async(std::launch::async, [] { return ProcessStreams().writeOutput(manyLines()); });
        EXPECT_EQ(written.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
        kill(getpid(), SIGTERM);
        EXPECT_FALSE(written.get());
    }
}

TEST(ProcessStreams, ReplaceClosedStreamsByStreamsThatFail) {
    const pid_t process = fork();
    if (process == 0) {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            close(stream);
        }
        const ProcessStreams streams;
        const auto hasMode = [](int stream, int mode) { return (fcntl(stream, F_GETFL) & O_ACCMODE) == mode; };
        _exit((hasMode(STDIN_FILENO, O_WRONLY) ? 0 : 1) + (hasMode(STDOUT_FILENO, O_RDONLY) ? 0 : 2) +
              (hasMode(STDERR_FILENO, O_RDONLY) ? 0 : 4));
    }
    int status = -1;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
}

TEST(ProcessStreams, KeepOpenStreams) {
    const WatchedOutput output;
    const ProcessStreams streams;
    EXPECT_EQ(fcntl(STDOUT_FILENO, F_GETFL) & O_ACCMODE, O_WRONLY);
}

TEST(ProcessStreams, WriteAnErrorInOneWrite) {
    const WatchedError error;
    ProcessStreams().writeError(longLine);
    EXPECT_EQ(error.writes(), std::vector{longLine});
}

TEST(ProcessStreams, WriteAnErrorInOneWriteWhileSignalsAreCaught) {
    const TerminationSignals signals;
    const WatchedError error;
    ProcessStreams().writeError(longLine);
    EXPECT_EQ(error.writes(), std::vector{longLine});
}

TEST(ProcessStreams, WriteAnErrorAfterATerminationSignal) {
    const TerminationSignals signals;
    const WatchedError error;
    raise(SIGTERM);
    ProcessStreams().writeError("told to end\n");
    EXPECT_EQ(error.writes(), std::vector<std::string>{"told to end\n"});
}

}  // namespace
}  // namespace lomaris
