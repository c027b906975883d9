// Times commands as whole processes, in turn (A B C A B C ...), so that a machine that becomes slower or faster
// meanwhile does so for all of them. Prints medians, and each later command's ratio to the first.
//
//     lomaris_process_benchmark RUNS NAME COMMAND [ARGUMENT...] [-- NAME COMMAND [ARGUMENT...]]...

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

extern char** environ;

namespace {

struct Measured {
    std::string name;
    std::vector<std::string> command;
    std::vector<double> wallMilliseconds;
    std::vector<double> cpuMilliseconds;
    long peakKilobytes = 0;
    int failures = 0;
};

double millisecondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

[[noreturn]] void fail(const std::string& message) {
    std::fprintf(stderr, "lomaris_process_benchmark: %s\n", message.c_str());
    std::exit(1);
}

void runOnce(Measured& measured, bool counts) {
    std::vector<char*> arguments;
    for (auto& word : measured.command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);

    const auto start = std::chrono::steady_clock::now();
    pid_t process = 0;
    if (posix_spawnp(&process, arguments.front(), &actions, nullptr, arguments.data(), environ) != 0) {
        fail("cannot start " + measured.command.front());
    }
    int status = 0;
    rusage usage{};
    if (wait4(process, &status, 0, &usage) != process) {
        fail("cannot wait for " + measured.command.front());
    }
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    posix_spawn_file_actions_destroy(&actions);

    if (!counts) {
        return;
    }
    measured.wallMilliseconds.push_back(wall.count());
    measured.cpuMilliseconds.push_back(millisecondsOf(usage.ru_utime) + millisecondsOf(usage.ru_stime));
    measured.peakKilobytes = std::max(measured.peakKilobytes, usage.ru_maxrss / LOMARIS_PEAK_MEMORY_PER_KIB);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        ++measured.failures;
    }
}

std::vector<Measured> parseCommands(int count, char** words) {
    std::vector<Measured> commands;
    bool nameExpected = true;
    for (int index = 2; index < count; ++index) {
        const std::string_view word(words[index]);
        if (word == "--") {
            nameExpected = true;
        } else if (nameExpected) {
            commands.emplace_back();
            commands.back().name = word;
            nameExpected = false;
        } else {
            commands.back().command.emplace_back(word);
        }
    }
    return commands;
}

}  // namespace

int main(int argumentCount, char** argumentVector) {
    const int runs = argumentCount > 1 ? std::atoi(argumentVector[1]) : 0;
    std::vector<Measured> commands = parseCommands(argumentCount, argumentVector);
    if (runs < 1 || commands.empty() ||
        std::any_of(commands.begin(), commands.end(), [](const Measured& one) { return one.command.empty(); })) {
        fail("usage: RUNS NAME COMMAND [ARGUMENT...] [-- NAME COMMAND [ARGUMENT...]]...");
    }
    constexpr int warmUps = 3;
    for (int run = -warmUps; run < runs; ++run) {
        for (auto& command : commands) {
            runOnce(command, run >= 0);
        }
    }
    std::printf("%-28s %10s %10s %12s %8s   (%d runs each, medians)\n", "", "wall ms", "cpu ms", "peak KiB", "ratio",
                runs);
    const double first = median(commands.front().wallMilliseconds);
    for (const auto& command : commands) {
        const double wall = median(command.wallMilliseconds);
        std::printf("%-28s %10.2f %10.2f %12ld %8.2f\n", command.name.c_str(), wall, median(command.cpuMilliseconds),
                    command.peakKilobytes, wall / first);
        if (command.failures != 0) {
            std::printf("%-28s %d of %d runs failed\n", "", command.failures, runs);
        }
    }
    return 0;
}
