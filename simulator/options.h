#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lomaris::simulator {

/// What the simulator is asked for.
struct Options {
    std::string desktop;
    std::optional<std::string> report;
    /// A file of steps, or "-" for standard input; without it the tool runs.
    std::optional<std::string> host;
    /// Of the tool, without a program name.
    std::vector<std::string> arguments;
    bool help = false;
};

/// The options, or one sentence that says why there are none.
[[nodiscard]] std::variant<Options, std::string> readOptions(std::span<const std::string> arguments);

/// Many lines, the last one with its line feed.
[[nodiscard]] std::string_view usage();

}  // namespace lomaris::simulator
