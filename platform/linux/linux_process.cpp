#include "platform/linux/linux_process.h"

#include <fstream>
#include <string_view>

namespace lomaris {

namespace {

bool isLiveProcess(const std::string& directory, ProcessIdentifier processIdentifier) {
    std::ifstream status(directory + "/status");
    bool isAlive = false;
    bool isProcess = false;
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("State:\t")) {
            isAlive = line.find_first_of("ZX", 7) != 7;
        } else if (line.starts_with("Tgid:\t")) {
            isProcess = line.substr(6) == std::to_string(processIdentifier);
            break;
        }
    }
    return isAlive && isProcess;
}

}  // namespace

std::optional<std::string> nameOfProcess(ProcessIdentifier processIdentifier) {
    const std::string directory = "/proc/" + std::to_string(processIdentifier);
    if (processIdentifier <= 0 || !isLiveProcess(directory, processIdentifier)) {
        return std::nullopt;
    }
    std::ifstream file(directory + "/comm");
    std::string name;
    // The name itself may hold a line feed; the file ends with one.
    std::getline(file, name, '\0');
    if (name.ends_with('\n')) {
        name.pop_back();
    }
    return name;
}

}  // namespace lomaris
