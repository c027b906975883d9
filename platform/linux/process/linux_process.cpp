#include "platform/linux/process/linux_process.h"

#include "platform/linux/process/file_contents.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace lomaris {

namespace {

constexpr std::size_t largestStatus = std::size_t{64} << 10U;

bool isLiveProcess(const std::string& directory, ProcessIdentifier processIdentifier) {
    const std::string status = readFile(directory + "/status", largestStatus).value_or("");
    bool isAlive = false;
    std::string_view rest = status;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.starts_with("State:\t")) {
            isAlive = line.find_first_of("ZX", 7) != 7;
        } else if (line.starts_with("Tgid:\t")) {
            return isAlive && line.substr(6) == std::to_string(processIdentifier);
        }
    }
    return false;
}

}  // namespace

std::optional<std::string> nameOfProcess(ProcessIdentifier processIdentifier) {
    const std::string directory = "/proc/" + std::to_string(processIdentifier);
    if (processIdentifier <= 0 || !isLiveProcess(directory, processIdentifier)) {
        return std::nullopt;
    }
    // The file ends with a line feed; the name itself may contain others.
    std::string name = readFile(directory + "/comm", largestStatus).value_or("");
    if (name.ends_with('\n')) {
        name.pop_back();
    }
    return name;
}

}  // namespace lomaris
