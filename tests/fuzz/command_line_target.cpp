// Arguments, each terminated by a NUL byte, are parsed to a command within its bounds or an error of one line.

#include "bridge/command_line_options.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/thrown_error.h"
#include "text/utf8.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace lomaris::test {
namespace {

std::vector<Text> argumentsFromBytes(std::string_view bytes) {
    std::vector<Text> arguments;
    while (!bytes.empty()) {
        const std::string_view argument = bytes.substr(0, bytes.find('\0'));
        arguments.push_back(textFromUtf8(argument));
        bytes.remove_prefix(std::min(argument.size() + 1, bytes.size()));
    }
    return arguments;
}

void requireLimit(std::int64_t limit) { require(limit >= 0 && limit <= 10000, "a context limit is 0 to 10000"); }

/// Requires the bounds of the fields that a command has.
struct Bounds {
    template <typename Command>
    void operator()(const Command& command) const {
        if constexpr (requires { command.delay; }) {
            require(command.delay >= 0 && command.delay <= 60, "a delay is 0 to 60 seconds");
        }
        if constexpr (requires { command.limits; }) {
            requireLimit(command.limits.before);
            requireLimit(command.limits.after);
        }
    }
};

bool hasLineFeed(const Text& text) { return text.find(u'\n') != Text::npos; }

}  // namespace

void tryInput(std::string_view bytes) {
    const std::vector<Text> arguments = argumentsFromBytes(bytes);
    std::optional<BridgeCommand> command;
    const auto error = thrownBy([&] { return command = CommandLineOptions::parse(arguments); });
    if (command) {
        std::visit(Bounds(), *command);
        require(CommandLineOptions::parse(arguments) == *command, "the same arguments give the same command");
        return;
    }
    require(error->errorCase() == BridgeError::Case::invalidArguments, "an error has the case invalidArguments");
    const Text message = error->errorDescription();
    require(!message.empty(), "an error has a message");
    // The message quotes arguments unchanged.
    require(!hasLineFeed(message) || std::ranges::any_of(arguments, hasLineFeed), "a message is one line");
}

}  // namespace lomaris::test
