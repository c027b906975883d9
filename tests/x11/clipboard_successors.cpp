#include "tests/x11/clipboard_successors.h"

#include "tests/support/waiting.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

namespace lomaris::test {

namespace {

std::string contentsOfFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream contents;
    contents << file.rdbuf();
    return contents.str();
}

}  // namespace

std::vector<pid_t> successors() {
    std::vector<pid_t> found;
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe");
    const std::string marker = std::string("LOMARIS_VIRTUAL_DESKTOP=") + std::getenv("LOMARIS_VIRTUAL_DESKTOP");
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const pid_t process = std::atoi(entry.path().filename().c_str());
        if (process > 0 && process != getpid() && std::filesystem::read_symlink(entry.path() / "exe", error) == self &&
            contentsOfFile(entry.path() / "environ").find(marker) != std::string::npos) {
            found.push_back(process);
        }
    }
    return found;
}

bool successorsBecome(std::size_t count) {
    return waitFor([count] { return successors().size() == count; });
}

}  // namespace lomaris::test
