// Runs a program and writes its peak memory to a file, in KiB.
//
//     lomaris_peak_memory FILE COMMAND [ARGUMENT...]
//
// The kernel counts the memory of the process that starts a program as memory of that program. This process is small,
// so that the figure is that of the program. Its status is that of the program, or 128 plus the number of the signal.

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

extern char** environ;

int main(int argumentCount, char** argumentVector) {
    constexpr int failed = 125;
    if (argumentCount < 3) {
        return failed;
    }
    pid_t process = 0;
    if (posix_spawn(&process, argumentVector[2], nullptr, nullptr, argumentVector + 2, environ) != 0) {
        return failed;
    }
    int status = 0;
    rusage usage{};
    if (wait4(process, &status, 0, &usage) != process) {
        return failed;
    }
    std::FILE* const file = std::fopen(argumentVector[1], "w");
    if (file == nullptr || std::fprintf(file, "%ld\n", usage.ru_maxrss) < 0 || std::fclose(file) != 0) {
        return failed;
    }
    constexpr int endedBySignal = 128;
    return WIFEXITED(status) ? WEXITSTATUS(status) : endedBySignal + WTERMSIG(status);
}
