#include "platform/linux/x11/clipboard/keeper_process.h"

#include "platform/linux/x11/clipboard/clipboard_keeper.h"
#include "platform/linux/x11/clipboard/keeper_channel.h"

#include <dirent.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris {

namespace {

/// The file descriptor of the channel in the keeper's program.
constexpr int channelNumber = 3;

/// Closes the open files with numbers in this range. For older kernels and sandboxes without close_range. Lists the
/// open files instead of trying all numbers, of which there may be a billion.
void closeListed(unsigned first, unsigned last) {
    DIR* const list = opendir("/proc/self/fd");
    if (list == nullptr) {
        return;
    }
    std::vector<int> numbers;
    while (const dirent* const entry = readdir(list)) {
        const auto number = static_cast<unsigned>(std::strtoul(entry->d_name, nullptr, 10));
        if (number >= first && number <= last) {
            numbers.push_back(static_cast<int>(number));
        }
    }
    closedir(list);
    for (const int number : numbers) {
        close(number);
    }
}

void closeRange(unsigned first, unsigned last) {
    if (first > last) {
        return;
    }
#ifdef SYS_close_range
    if (syscall(SYS_close_range, first, last, 0U) == 0) {
        return;
    }
#endif
    closeListed(first, last);
}

/// Closes all files except `kept`. Opens /dev/null on the standard streams, so that no other file gets their numbers.
void closeOthers(int kept) {
    const int nothing = open("/dev/null", O_RDWR);
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (stream != kept && stream != nothing && dup2(nothing, stream) < 0) {
            close(stream);
        }
    }
    const auto number = static_cast<unsigned>(kept);
    constexpr unsigned firstOther = STDERR_FILENO + 1;
    if (number > firstOther) {
        closeRange(firstOther, number - 1);
    }
    closeRange(number < firstOther ? firstOther : number + 1, ~0U);
}

void resetSignals() {
    for (int signal = 1; signal < NSIG; ++signal) {
        // Fails for some signals, which always have their default action.
        static_cast<void>(std::signal(signal, SIG_DFL));
    }
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

/// Detaches from the process that started this one (own session, not its child, none of its files) and runs the keeper.
[[noreturn]] void becomeKeeper(int channel) {
    // Until setsid, signals to the process group are meant for the process that started this one.
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        static_cast<void>(std::signal(signal, SIG_IGN));
    }
    setsid();
    resetSignals();
    if (fork() != 0) {
        _exit(0);
    }
    closeOthers(channel);
    // A file system with a working directory in it cannot be unmounted.
    static_cast<void>(!chdir("/"));
    runClipboardKeeper(FileDescriptor(channel));
    _exit(0);
}

/// The environment variables that the keeper needs to connect to the X server.
std::vector<char*> environmentOfKeeper() {
    std::vector<char*> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text(*variable);
        for (const std::string_view name : {"DISPLAY=", "XAUTHORITY=", "HOME="}) {
            if (text.starts_with(name)) {
                variables.push_back(*variable);
            }
        }
    }
    variables.push_back(nullptr);
    return variables;
}

}  // namespace

StartedKeeper forkKeeper() {
    KeeperChannelEnds ends = makeKeeperChannel();
    if (!ends.partner) {
        return {};
    }
    // Block all signals, so that no handler of this process runs in the child.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t child = fork();
    if (child == 0) {
        becomeKeeper(ends.keeper.number());
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (child < 0) {
        return {};
    }
    return {std::move(ends.partner), child};
}

StartedKeeper spawnKeeper(const std::string& program) {
    KeeperChannelEnds ends = makeKeeperChannel();
    if (!ends.partner || program.empty()) {
        return {};
    }
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    // The duplicate is inherited; the original is closed on exec.
    posix_spawn_file_actions_adddup2(&actions, ends.keeper.number(), channelNumber);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::string name = program;
    std::array<char*, 2> arguments{name.data(), nullptr};
    pid_t child = -1;
    const int error =
        posix_spawn(&child, program.c_str(), &actions, &attributes, arguments.data(), environmentOfKeeper().data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        return {};
    }
    return {std::move(ends.partner), child};
}

std::string keeperProgram(const std::string& given) {
    if (!given.empty()) {
        return given;
    }
    std::array<char, PATH_MAX> own{};
    const ssize_t length = readlink("/proc/self/exe", own.data(), own.size());
    if (length > 0) {
        const std::string_view path(own.data(), static_cast<std::size_t>(length));
        std::string beside(path.substr(0, path.rfind('/') + 1));
        beside += "lomaris-clipboard-keeper";
        if (access(beside.c_str(), X_OK) == 0) {
            return beside;
        }
    }
    return LOMARIS_INSTALLED_KEEPER;
}

void reapKeeper(StartedKeeper& keeper) {
    const pid_t child = std::exchange(keeper.child, -1);
    while (child > 0 && waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void runKeeperProgram() { becomeKeeper(channelNumber); }

}  // namespace lomaris
