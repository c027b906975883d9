#include "tests/install/running_host.h"

#include "tests/support/waiting.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace lomaris::test {

namespace {

std::string contentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

RunningHost::RunningHost(const std::vector<std::string>& arguments) {
    if (mkfifo(input_.c_str(), 0600) != 0) {
        throw std::system_error(errno, std::generic_category(), "mkfifo");
    }
    std::vector<std::string> commandLine{"sh", "-c",   R"(input=$1; shift; exec "$@" <"$input")",
                                         "sh", input_, LOMARIS_EMBEDDING_HOST};
    commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
    ProcessOptions options;
    options.outputFile = output_;
    end_ = std::async(std::launch::async, [commandLine, options] { return runProcess(commandLine, options); });
    // Blocks until the host opens the other end.
    keyboard_.open(input_);
    const bool hasCaptured = waitFor([this] {
        return end_.wait_for(std::chrono::seconds(0)) == std::future_status::ready ||
               contentsOf(output_).find("usesClipboardFallback=") != std::string::npos;
    });
    if (!hasCaptured || end_.wait_for(std::chrono::seconds(0)) == std::future_status::ready) {
        keyboard_.close();
        throw std::runtime_error("the host captured nothing: " + end_.get().error);
    }
}

ProcessResult RunningHost::submit() {
    keyboard_ << '\n';
    keyboard_.close();
    ProcessResult result = end_.get();
    result.output = contentsOf(output_);
    return result;
}

std::string traces(const std::vector<int>& capture, const std::vector<int>& guard) {
    constexpr std::array captureNames = {"route", "error", "copy_item", "key_presses", "menu_presses", "web"};
    constexpr std::array guardNames = {"reason", "error", "expected_chars", "current_chars"};
    std::string lines;
    for (std::size_t index = 0; index < captureNames.size(); ++index) {
        lines += std::string("capture.") + captureNames.at(index) + "=" + std::to_string(capture.at(index)) + "\n";
    }
    for (std::size_t index = 0; index < guardNames.size(); ++index) {
        lines += std::string("guard.") + guardNames.at(index) + "=" + std::to_string(guard.at(index)) + "\n";
    }
    return lines;
}

}  // namespace lomaris::test
