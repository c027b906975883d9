#include "bridge/command_line_options.h"

#include "accessibility/model/bridge_error.h"

#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <utility>

namespace lomaris {

namespace {

constexpr double maximumDelay = 60;
constexpr std::int64_t maximumLimit = 10000;

/// The values of all options, before the command word is checked.
struct OptionValues {
    bool prompt = false;
    bool json = false;
    double delay = 0;
    std::int64_t beforeLimit = defaultContextLimit;
    std::int64_t afterLimit = defaultContextLimit;
    std::optional<Text> replacement;

    [[nodiscard]] bool hasDelay() const { return !(delay == 0); }
    [[nodiscard]] bool hasLimits() const {
        return beforeLimit != defaultContextLimit || afterLimit != defaultContextLimit;
    }
};

/// Converts `text` to ASCII. Returns nullopt if it contains any other character.
std::optional<std::string> asciiOf(TextView text) {
    std::string ascii;
    ascii.reserve(text.size());
    for (const char16_t unit : text) {
        if (unit > 0x7F) {
            return std::nullopt;
        }
        ascii.push_back(static_cast<char>(unit));
    }
    return ascii;
}

double parseDelay(TextView value) {
    const auto delay = CommandLineOptions::parseDouble(value);
    if (!delay || !(*delay >= 0) || *delay > maximumDelay) {
        throw BridgeError::invalidArguments(u"--delay must be between 0 and 60 seconds.");
    }
    return *delay;
}

bool takesValue(TextView option) {
    return option == u"--delay" || option == u"--before-chars" || option == u"--after-chars" ||
           option == u"--replacement";
}

void storeValue(OptionValues& values, TextView option, const Text& value) {
    if (option == u"--delay") {
        values.delay = parseDelay(value);
    } else if (option == u"--before-chars") {
        values.beforeLimit = CommandLineOptions::parseLimit(value, option);
    } else if (option == u"--after-chars") {
        values.afterLimit = CommandLineOptions::parseLimit(value, option);
    } else {
        values.replacement = value;
    }
}

OptionValues parseOptions(std::span<const Text> arguments) {
    OptionValues values;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const Text& argument = arguments[index];
        if (argument == u"--prompt") {
            values.prompt = true;
        } else if (argument == u"--json") {
            values.json = true;
        } else if (!takesValue(argument)) {
            throw BridgeError::invalidArguments(u"Unknown option \"" + argument + u"\".");
        } else if (index + 1 == arguments.size()) {
            throw BridgeError::invalidArguments(argument + u" requires a value.");
        } else {
            ++index;
            storeValue(values, argument, arguments[index]);
        }
    }
    return values;
}

void refuseIf(bool refused, TextView message) {
    if (refused) {
        throw BridgeError::invalidArguments(Text(message));
    }
}

}  // namespace

BridgeCommand CommandLineOptions::parse(std::span<const Text> arguments) {
    if (arguments.empty() || arguments.front() == u"-h" || arguments.front() == u"--help") {
        return command::Help{};
    }
    const Text& word = arguments.front();
    OptionValues values = parseOptions(arguments.subspan(1));

    if (word == u"permission-status") {
        refuseIf(values.json || values.hasDelay() || values.hasLimits() || values.replacement,
                 u"permission-status only accepts --prompt.");
        return command::PermissionStatus{values.prompt};
    }
    if (word == u"read-selection") {
        refuseIf(values.prompt || values.replacement, u"read-selection does not accept that option.");
        return command::ReadSelection{values.delay, values.beforeLimit, values.afterLimit, values.json};
    }
    if (word == u"replace-selection") {
        refuseIf(values.prompt || values.json, u"replace-selection does not accept that option.");
        return command::ReplaceSelection{values.delay, std::move(values.replacement), values.beforeLimit,
                                         values.afterLimit};
    }
    const bool hasMoreThanDelay = values.prompt || values.json || values.hasLimits() || values.replacement;
    if (word == u"diagnose-selection") {
        refuseIf(hasMoreThanDelay, u"diagnose-selection only accepts --delay.");
        return command::DiagnoseSelection{values.delay};
    }
    if (word == u"compatibility-check") {
        refuseIf(hasMoreThanDelay, u"compatibility-check only accepts --delay.");
        return command::CompatibilityCheck{values.delay};
    }
    if (word == u"replace-selection-request") {
        refuseIf(values.prompt || values.json || values.replacement,
                 u"replace-selection-request accepts context limits and --delay only.");
        return command::ReplaceSelectionRequest{values.delay, values.beforeLimit, values.afterLimit};
    }
    throw BridgeError::invalidArguments(u"Unknown command \"" + word + u"\".");
}

std::int64_t CommandLineOptions::parseLimit(TextView value, TextView option) {
    const auto ascii = asciiOf(value).value_or(std::string());
    std::string_view digits = ascii;
    // std::from_chars accepts no plus sign.
    if (digits.starts_with('+') && !digits.starts_with("+-")) {
        digits.remove_prefix(1);
    }
    std::int64_t limit = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), limit);
    if (error != std::errc() || end != digits.data() + digits.size() || limit < 0 || limit > maximumLimit) {
        throw BridgeError::invalidArguments(Text(option) + u" must be between 0 and 10000.");
    }
    return limit;
}

std::optional<double> CommandLineOptions::parseDouble(TextView value) {
    const auto ascii = asciiOf(value);
    constexpr std::string_view skippedByConversion = "\t\n\v\f\r ";
    if (!ascii || ascii->empty() || skippedByConversion.find(ascii->front()) != std::string_view::npos) {
        return std::nullopt;
    }
    // strtod uses the C locale, because the tool never sets another.
    char* end = nullptr;
    const double number = std::strtod(ascii->c_str(), &end);
    if (end == ascii->c_str() || end != ascii->c_str() + ascii->size()) {
        return std::nullopt;
    }
    return number;
}

TextView CommandLineOptions::usage() {
    return u"Lomaris macOS Accessibility bridge\n"
           u"\n"
           u"Usage:\n"
           u"  lomaris-macos-bridge permission-status [--prompt]\n"
           u"  lomaris-macos-bridge read-selection [--delay <seconds>] [--json]\n"
           u"  lomaris-macos-bridge replace-selection [--replacement <text>] [--delay <seconds>]\n"
           u"  lomaris-macos-bridge replace-selection-request [--delay <seconds>]\n"
           u"  lomaris-macos-bridge diagnose-selection [--delay <seconds>]\n"
           u"  lomaris-macos-bridge compatibility-check [--delay <seconds>]\n"
           u"\n"
           u"Options:\n"
           u"  --delay <seconds>          Wait before accessing the focused application\n"
           u"  --before-chars <number>    Context before selection (default: 500)\n"
           u"  --after-chars <number>     Context after selection (default: 500)\n"
           u"  --json                     Emit structured selection data\n"
           u"  --prompt                   Ask macOS for Accessibility permission\n"
           u"  --replacement <text>       Replacement text; reads UTF-8 stdin when omitted\n"
           u"  -h, --help                 Show this help\n"
           u"\n"
           u"The --delay option lets you invoke the bridge in Terminal and switch to the\n"
           u"target application before the accessibility operation runs.";
}

}  // namespace lomaris
