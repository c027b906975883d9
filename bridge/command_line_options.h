#pragma once

#include "bridge/bridge_command.h"
#include "text/text.h"

#include <cstdint>
#include <optional>
#include <span>

namespace lomaris {

/// Turns the argument list into a command. Pure: nothing but the list is looked at, and nothing is printed.
namespace CommandLineOptions {

/// The command for the arguments without the program name. Throws `BridgeError::invalidArguments` with the message for
/// the user; the first argument that fails decides. Options are checked before the command word, and against it by
/// their values: one given with its default value passes.
[[nodiscard]] BridgeCommand parse(std::span<const Text> arguments);

/// A context limit: an optional sign and ASCII digits, 0 to 10000. Throws `BridgeError::invalidArguments` naming
/// `option`.
[[nodiscard]] std::int64_t parseLimit(TextView value, TextView option);

/// The whole of `value` as a number, by the rules of C: decimal and hexadecimal forms, inf and nan. Nothing where
/// anything is left over, at the beginning or at the end.
[[nodiscard]] std::optional<double> parseDouble(TextView value);

/// The text that help prints: 21 lines, without a line feed at the end.
[[nodiscard]] TextView usage();

}  // namespace CommandLineOptions

}  // namespace lomaris
