#include "tests/support/running_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <system_error>

extern char** environ;

namespace lomaris::test {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    for (std::string& string : strings) {
        pointers.push_back(string.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

bool isSetBy(const std::vector<std::pair<std::string, std::string>>& variables, std::string_view entry) {
    for (const auto& [name, value] : variables) {
        if (entry.starts_with(name + "=")) {
            return true;
        }
    }
    return false;
}

std::string packageOf(const std::string& program) { return program == "Xvfb" ? "xvfb" : program; }

}  // namespace

RunningProgram::RunningProgram(std::vector<std::string> commandLine,
                               const std::vector<std::pair<std::string, std::string>>& variables) {
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (!isSetBy(variables, *entry)) {
            environment.emplace_back(*entry);
        }
    }
    for (const auto& [name, value] : variables) {
        environment.push_back(name + "=" + value);
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const int error = posix_spawnp(&processIdentifier_, commandLine.front().c_str(), &actions, nullptr,
                                   pointersTo(commandLine).data(), pointersTo(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), commandLine.front());
    }
}

void RunningProgram::freeze() const {
    kill(processIdentifier_, SIGSTOP);
    int status = 0;
    while (waitpid(processIdentifier_, &status, WUNTRACED) < 0 && errno == EINTR) {
    }
}

void RunningProgram::resume() const { kill(processIdentifier_, SIGCONT); }

bool RunningProgram::runs() const {
    siginfo_t ended{};
    return waitid(P_PID, static_cast<id_t>(processIdentifier_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == 0;
}

void RunningProgram::end() {
    if (processIdentifier_ < 0) {
        return;
    }
    kill(processIdentifier_, SIGKILL);
    while (waitpid(processIdentifier_, nullptr, 0) < 0 && errno == EINTR) {
    }
    processIdentifier_ = -1;
}

bool isInstalled(const std::string& program) {
    const char* const path = std::getenv("PATH");
    std::istringstream directories(path != nullptr ? path : "");
    for (std::string directory; std::getline(directories, directory, ':');) {
        if (access((directory + "/" + program).c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

std::string missingPrograms(const std::vector<std::string>& programs) {
    std::string missing;
    for (const std::string& program : programs) {
        if (!isInstalled(program)) {
            missing += program + " is missing; install the Debian package " + packageOf(program) + ". ";
        }
    }
    return missing;
}

}  // namespace lomaris::test
