#include "bridge/command_line_options.h"

#include "accessibility/model/bridge_error.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace lomaris {

namespace {

constexpr std::int64_t maximumDelay = 60;
constexpr std::int64_t maximumLimit = 10000;

/// The values of all options, before the command word is checked. A default value means the same as a missing option.
struct OptionValues {
    bool prompt = false;
    bool json = false;
    double delay = 0;
    std::int64_t beforeLimit = defaultContextLimits.before;
    std::int64_t afterLimit = defaultContextLimits.after;
    std::optional<Text> replacement;

    [[nodiscard]] ContextLimits limits() const { return {beforeLimit, afterLimit}; }
};

/// One bit for each command.
namespace command_bit {
constexpr unsigned permissionStatus = 1U << 0U;
constexpr unsigned readSelection = 1U << 1U;
constexpr unsigned replaceSelection = 1U << 2U;
constexpr unsigned replaceSelectionRequest = 1U << 3U;
constexpr unsigned diagnoseSelection = 1U << 4U;
constexpr unsigned compatibilityCheck = 1U << 5U;
}  // namespace command_bit

struct Option {
    TextView name;
    /// Names the value in the help; empty for a flag.
    TextView placeholder;
    TextView help;
    /// The type of the field is the kind of the value: a flag, seconds, UTF-16 units or any text.
    std::variant<bool OptionValues::*, double OptionValues::*, std::int64_t OptionValues::*,
                 std::optional<Text> OptionValues::*>
        field;
    /// The commands that accept a value other than the default.
    unsigned commands = 0;
    /// The largest accepted number; the smallest is 0.
    std::int64_t maximum = 0;
};

/// In the order of the help.
constexpr std::array<Option, 6> optionTable = {{
    {.name = u"--delay",
     .placeholder = u"<seconds>",
     .help = u"Wait before accessing the focused application",
     .field = &OptionValues::delay,
     .commands = command_bit::readSelection | command_bit::replaceSelection | command_bit::replaceSelectionRequest |
                 command_bit::diagnoseSelection | command_bit::compatibilityCheck,
     .maximum = maximumDelay},
    {.name = u"--before-chars",
     .placeholder = u"<number>",
     .help = u"Context before selection (default: 500)",
     .field = &OptionValues::beforeLimit,
     .commands = command_bit::readSelection | command_bit::replaceSelection | command_bit::replaceSelectionRequest,
     .maximum = maximumLimit},
    {.name = u"--after-chars",
     .placeholder = u"<number>",
     .help = u"Context after selection (default: 500)",
     .field = &OptionValues::afterLimit,
     .commands = command_bit::readSelection | command_bit::replaceSelection | command_bit::replaceSelectionRequest,
     .maximum = maximumLimit},
    {.name = u"--json",
     .placeholder = u"",
     .help = u"Emit structured selection data",
     .field = &OptionValues::json,
     .commands = command_bit::readSelection},
    {.name = u"--prompt",
     .placeholder = u"",
     .help = u"Ask macOS for Accessibility permission",
     .field = &OptionValues::prompt,
     .commands = command_bit::permissionStatus},
    {.name = u"--replacement",
     .placeholder = u"<text>",
     .help = u"Replacement text; reads UTF-8 stdin when omitted",
     .field = &OptionValues::replacement,
     .commands = command_bit::replaceSelection},
}};

struct Command {
    unsigned bit;
    TextView word;
    /// The options that the help names.
    TextView synopsis;
    /// The message if an option is not accepted.
    TextView refusal;
    BridgeCommand (*make)(OptionValues&& values);
};

/// In the order of the help.
constexpr std::array<Command, 6> commandTable = {{
    {command_bit::permissionStatus, u"permission-status", u"[--prompt]", u"permission-status only accepts --prompt.",
     [](OptionValues&& values) -> BridgeCommand { return command::PermissionStatus{values.prompt}; }},
    {command_bit::readSelection, u"read-selection", u"[--delay <seconds>] [--json]",
     u"read-selection does not accept that option.",
     [](OptionValues&& values) -> BridgeCommand {
         return command::ReadSelection{values.delay, values.limits(), values.json};
     }},
    {command_bit::replaceSelection, u"replace-selection", u"[--replacement <text>] [--delay <seconds>]",
     u"replace-selection does not accept that option.",
     [](OptionValues&& values) -> BridgeCommand {
         return command::ReplaceSelection{values.delay, std::move(values.replacement), values.limits()};
     }},
    {command_bit::replaceSelectionRequest, u"replace-selection-request", u"[--delay <seconds>]",
     u"replace-selection-request accepts context limits and --delay only.",
     [](OptionValues&& values) -> BridgeCommand {
         return command::ReplaceSelectionRequest{values.delay, values.limits()};
     }},
    {command_bit::diagnoseSelection, u"diagnose-selection", u"[--delay <seconds>]",
     u"diagnose-selection only accepts --delay.",
     [](OptionValues&& values) -> BridgeCommand { return command::DiagnoseSelection{values.delay}; }},
    {command_bit::compatibilityCheck, u"compatibility-check", u"[--delay <seconds>]",
     u"compatibility-check only accepts --delay.",
     [](OptionValues&& values) -> BridgeCommand { return command::CompatibilityCheck{values.delay}; }},
}};

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

/// `unit`: what follows the maximum in the message.
[[noreturn]] void refuseNumber(TextView option, std::int64_t maximum, TextView unit) {
    throw BridgeError::invalidArguments(Text(option) + u" must be between 0 and " +
                                        textFromUtf8(std::to_string(maximum)) + Text(unit) + u".");
}

double secondsWithin(std::int64_t maximum, TextView value, TextView option) {
    const auto seconds = CommandLineOptions::parseDouble(value);
    if (!seconds || !(*seconds >= 0) || *seconds > static_cast<double>(maximum)) {
        refuseNumber(option, maximum, u" seconds");
    }
    return *seconds;
}

std::int64_t integerWithin(std::int64_t maximum, TextView value, TextView option) {
    const auto ascii = asciiOf(value).value_or(std::string());
    std::string_view digits = ascii;
    // std::from_chars accepts no plus sign.
    if (digits.starts_with('+') && !digits.starts_with("+-")) {
        digits.remove_prefix(1);
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || number < 0 || number > maximum) {
        refuseNumber(option, maximum, u"");
    }
    return number;
}

/// Checks the value of an option and stores it, one overload for each kind of value.
struct ValueStore {
    OptionValues& values;
    const Option& option;
    const Text& value;

    void operator()(bool OptionValues::*field) const { values.*field = true; }
    void operator()(double OptionValues::*field) const {
        values.*field = secondsWithin(option.maximum, value, option.name);
    }
    void operator()(std::int64_t OptionValues::*field) const {
        values.*field = integerWithin(option.maximum, value, option.name);
    }
    void operator()(std::optional<Text> OptionValues::*field) const { values.*field = value; }
};

bool isFlag(const Option& option) { return std::holds_alternative<bool OptionValues::*>(option.field); }

/// NaN would differ from the default, and -0 does not.
bool differsFromDefault(const OptionValues& values, const Option& option) {
    return std::visit([&](auto field) { return !(values.*field == OptionValues().*field); }, option.field);
}

OptionValues parseOptions(std::span<const Text> arguments) {
    OptionValues values;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const Text& argument = arguments[index];
        const auto* const option = std::ranges::find(optionTable, argument, &Option::name);
        if (option == optionTable.end()) {
            throw BridgeError::invalidArguments(u"Unknown option \"" + argument + u"\".");
        }
        if (!isFlag(*option) && ++index == arguments.size()) {
            throw BridgeError::invalidArguments(argument + u" requires a value.");
        }
        std::visit(ValueStore{values, *option, arguments[index]}, option->field);
    }
    return values;
}

/// One line of the help on an option.
Text helpLine(Text option, TextView help) {
    constexpr std::size_t helpColumn = 29;
    Text line = u"  " + std::move(option);
    line.resize(helpColumn, u' ');
    return line.append(help).append(u"\n");
}

}  // namespace

BridgeCommand CommandLineOptions::parse(std::span<const Text> arguments) {
    if (arguments.empty() || arguments.front() == u"-h" || arguments.front() == u"--help") {
        return command::Help{};
    }
    const Text& word = arguments.front();
    OptionValues values = parseOptions(arguments.subspan(1));

    const auto* const command = std::ranges::find(commandTable, word, &Command::word);
    if (command == commandTable.end()) {
        throw BridgeError::invalidArguments(u"Unknown command \"" + word + u"\".");
    }
    for (const Option& option : optionTable) {
        if ((option.commands & command->bit) == 0 && differsFromDefault(values, option)) {
            throw BridgeError::invalidArguments(Text(command->refusal));
        }
    }
    return command->make(std::move(values));
}

std::int64_t CommandLineOptions::parseLimit(TextView value, TextView option) {
    return integerWithin(maximumLimit, value, option);
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

Text CommandLineOptions::usage() {
    Text usage =
        u"Lomaris macOS Accessibility bridge\n"
        u"\n"
        u"Usage:\n";
    for (const Command& command : commandTable) {
        usage.append(u"  lomaris-macos-bridge ").append(command.word).append(u" ").append(command.synopsis) += u'\n';
    }
    usage +=
        u"\n"
        u"Options:\n";
    for (const Option& option : optionTable) {
        usage +=
            helpLine(Text(option.name).append(isFlag(option) ? u"" : u" ").append(option.placeholder), option.help);
    }
    usage += helpLine(u"-h, --help", u"Show this help");
    return usage +
           u"\n"
           u"The --delay option lets you invoke the bridge in Terminal and switch to the\n"
           u"target application before the accessibility operation runs.";
}

}  // namespace lomaris
