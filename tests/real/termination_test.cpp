#include "tests/support/process.h"
#include "tests/support/waiting.h"
#include "tests/x11/key_window.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

extern char** environ;

namespace lomaris::test {
namespace {

constexpr std::array<int, 3> endingSignals{SIGTERM, SIGINT, SIGHUP};

enum class OutputPipe { empty, full };

/// A running tool, whose standard output is a pipe without a reader.
class RunningTool {
public:
    explicit RunningTool(std::vector<std::string> arguments, OutputPipe output = OutputPipe::empty) {
        if (pipe2(ends_.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        if (output == OutputPipe::full) {
            fill();
        }
        arguments.insert(arguments.begin(), LOMARIS_TOOL);
        std::vector<char*> pointers;
        for (std::string& argument : arguments) {
            pointers.push_back(argument.data());
        }
        pointers.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, ends_[1], STDOUT_FILENO);
        // This program may have been started with the signals ignored.
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        sigset_t defaults;
        sigemptyset(&defaults);
        for (const int signal : endingSignals) {
            sigaddset(&defaults, signal);
        }
        posix_spawnattr_setsigdefault(&attributes, &defaults);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
        const int error = posix_spawn(&process_, LOMARIS_TOOL, &actions, &attributes, pointers.data(), environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0) {
            throw std::runtime_error("the tool could not be started");
        }
    }
    RunningTool(const RunningTool&) = delete;
    RunningTool& operator=(const RunningTool&) = delete;
    ~RunningTool() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
        close(ends_[0]);
        close(ends_[1]);
    }

    void signal(int number) const { kill(process_, number); }

    /// The exit status, or the negated number of the signal that ended it. nullopt if it does not end.
    [[nodiscard]] std::optional<int> end() {
        int status = 0;
        if (!waitFor([this, &status] { return waitpid(process_, &status, WNOHANG) == process_; })) {
            return std::nullopt;
        }
        process_ = -1;
        return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }

private:
    void fill() const {
        const std::array<char, 4096> bytes{};
        fcntl(ends_[1], F_SETFL, O_NONBLOCK);
        while (write(ends_[1], bytes.data(), bytes.size()) > 0) {
        }
        fcntl(ends_[1], F_SETFL, 0);
    }

    std::array<int, 2> ends_{-1, -1};
    pid_t process_ = -1;
};

/// A target in front whose copies and pastes the test controls, and the user's clipboard.
class Termination : public testing::Test {
protected:
    /// Copies words at each copy key, until there is a paste key or `isOver` returns true. Returns true for a paste
    /// key.
    [[nodiscard]] bool copiesUntilItIsToPaste(const std::function<bool()>& isOver) {
        bool isToPaste = false;
        const bool isReached = waitFor([&] {
            const std::vector<std::string> keys = window_.takeKeys();
            if (std::find(keys.begin(), keys.end(), "+c control") != keys.end()) {
                copied_ = std::make_unique<OtherOwner>(std::vector<OfferedTarget>{{"UTF8_STRING", {"", 8, "words"}}});
            }
            isToPaste = std::find(keys.begin(), keys.end(), "+v control") != keys.end();
            return isToPaste || isOver();
        });
        return isReached && isToPaste;
    }

    /// Waits until the target gets a copy key, and does not copy. Returns false after a timeout.
    [[nodiscard]] bool isAskedToCopy() {
        return waitFor([this] {
            const std::vector<std::string> keys = window_.takeKeys();
            return std::find(keys.begin(), keys.end(), "+c control") != keys.end();
        });
    }

private:
    KeyWindow window_;
    UserClipboard clipboard_;
    std::unique_ptr<OtherOwner> copied_;
};

TEST_F(Termination, DuringAReadRestoresTheClipboard) {
    for (const int signal : endingSignals) {
        RunningTool tool({"read-selection"});
        ASSERT_TRUE(isAskedToCopy());
        EXPECT_FALSE(UserClipboard::isIntact()) << "the tool waits for the copy";
        tool.signal(signal);
        EXPECT_EQ(tool.end(), -signal);
        EXPECT_TRUE(UserClipboard::isIntact()) << signal;
    }
}

TEST_F(Termination, BeforeAReplacementRestoresTheClipboard) {
    for (const int signal : endingSignals) {
        RunningTool tool({"replace-selection", "--replacement", "others"});
        ASSERT_TRUE(isAskedToCopy());
        tool.signal(signal);
        EXPECT_EQ(tool.end(), -signal);
        EXPECT_TRUE(UserClipboard::isIntact()) << signal;
    }
}

TEST_F(Termination, AfterAPasteKeepsTheTextForTheTarget) {
    for (const int signal : endingSignals) {
        // The tool cannot end by itself, as its output cannot be written.
        RunningTool tool({"replace-selection", "--replacement", "others"}, OutputPipe::full);
        ASSERT_TRUE(copiesUntilItIsToPaste([] { return false; }));
        tool.signal(signal);
        ASSERT_EQ(tool.end(), -signal);
        EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "others"})) << signal;
    }
}

TEST_F(Termination, ClosesTheOutputsWhileTheTextIsServed) {
    // Returns when both outputs are closed.
    auto result = std::async(std::launch::async, [] {
        return runTool({"replace-selection", "--replacement", "others"});
    });
    const auto isOver = [&result] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; };
    EXPECT_TRUE(copiesUntilItIsToPaste(isOver));
    const bool hasEnded = waitFor(isOver);
    EXPECT_TRUE(hasEnded);
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "others"}));
    // The keeper ends when another program owns the clipboard, and any output that it holds open is closed then.
    const OtherOwner next({});
    EXPECT_EQ(result.get(), (ProcessResult{0, "replaced\n", ""}));
}

}  // namespace
}  // namespace lomaris::test
