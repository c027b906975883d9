#include "tests/macos_native/other_program.h"

#include "tests/support/process.h"
#include "text/utf8.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace lomaris::test::other_program {

namespace {

std::string run(std::vector<std::string> arguments) {
    std::vector<std::string> commandLine{"/usr/bin/osascript", "-l", "JavaScript", LOMARIS_OTHER_PROGRAM};
    commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
    ProcessResult result = runProcess(commandLine);
    if (result.status != 0) {
        throw std::runtime_error("the other program failed: " + result.error);
    }
    if (!result.output.empty() && result.output.back() == '\n') {
        result.output.pop_back();
    }
    return std::move(result.output);
}

std::string hexFrom(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hex;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        hex += digits[code / digits.size()];
        hex += digits[code % digits.size()];
    }
    return hex;
}

Bytes bytesFrom(const std::string& hex) {
    constexpr int base = 16;
    Bytes bytes;
    for (std::size_t digit = 0; digit + 1 < hex.size(); digit += 2) {
        bytes += static_cast<char>(std::stoi(hex.substr(digit, 2), nullptr, base));
    }
    return bytes;
}

}  // namespace

void copy(const std::vector<std::pair<PasteboardType, Bytes>>& item) {
    std::vector<std::string> arguments{"copy"};
    for (const auto& [type, bytes] : item) {
        arguments.push_back(type + "=" + hexFrom(bytes));
    }
    static_cast<void>(run(std::move(arguments)));
}

std::optional<Bytes> read(const PasteboardType& type) {
    const std::string answer = run({"read", type});
    return answer == "none" ? std::nullopt : std::optional(bytesFrom(answer));
}

Text nameOf(pid_t process) { return textFromUtf8(run({"name", std::to_string(process)})); }

void pressHarmlessKey() {
    constexpr int f18 = 79;
    static_cast<void>(run({"press", std::to_string(f18)}));
}

}  // namespace lomaris::test::other_program
