#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lomaris::simulator {

/// The command line of the simulator.
struct Options {
    std::string desktop;
    std::optional<std::string> report;
    /// A file of steps, or "-" for standard input. If absent, the tool is run.
    std::optional<std::string> host;
    /// The arguments of the tool, without a program name.
    std::vector<std::string> arguments;
    bool help = false;
};

/// Parses the options. Returns one sentence for the user if they are invalid.
[[nodiscard]] std::variant<Options, std::string> readOptions(std::span<const std::string> arguments);

/// Returns the usage text, with a final line feed.
[[nodiscard]] std::string_view usage();

}  // namespace lomaris::simulator
