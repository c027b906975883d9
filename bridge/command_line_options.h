#pragma once

#include "bridge/bridge_command.h"
#include "text/text.h"

#include <cstdint>
#include <optional>
#include <span>

namespace lomaris {

/// Parses the command line. Pure functions: they only read their arguments and print nothing.
namespace CommandLineOptions {

/// Parses the arguments, without the program name. Throws `BridgeError::invalidArguments` with the message for the user
/// about the first invalid argument. All options are parsed before the command word is checked. A command rejects an
/// option that it does not support only if its value is not the default.
[[nodiscard]] BridgeCommand parse(std::span<const Text> arguments);

/// Parses a context limit: an optional sign and ASCII digits, 0 to 10000. Throws `BridgeError::invalidArguments` that
/// names `option`.
[[nodiscard]] std::int64_t parseLimit(TextView value, TextView option);

/// Parses the whole of `value` as a C floating-point number: decimal or hexadecimal, inf or nan. Returns nullopt if
/// anything else precedes or follows the number, including white space.
[[nodiscard]] std::optional<double> parseDouble(TextView value);

/// Returns the help text: 21 lines, without a final line feed.
[[nodiscard]] Text usage();

}  // namespace CommandLineOptions

}  // namespace lomaris
