#include "simulator/options.h"

#include <cstddef>
#include <functional>
#include <set>

namespace lomaris::simulator {

std::variant<Options, std::string> readOptions(std::span<const std::string> arguments) {
    Options options;
    std::set<std::string, std::less<>> given;
    bool hasArguments = false;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& option = arguments[index];
        if (option == "-h" || option == "--help") {
            options.help = true;
            return options;
        }
        if (option == "--") {
            hasArguments = true;
            options.arguments.assign(arguments.begin() + static_cast<std::ptrdiff_t>(index) + 1, arguments.end());
            break;
        }
        if (option != "--desktop" && option != "--report" && option != "--host") {
            return "unknown option \"" + option + "\"; the arguments of the tool stand behind --";
        }
        if (!given.insert(option).second) {
            return option + " stands twice";
        }
        if (++index == arguments.size()) {
            return option + " requires a file";
        }
        if (option == "--desktop") {
            options.desktop = arguments[index];
        } else if (option == "--report") {
            options.report = arguments[index];
        } else {
            options.host = arguments[index];
        }
    }
    if (!given.contains("--desktop")) {
        return "--desktop FILE is missing";
    }
    if (options.host.has_value() == hasArguments) {
        return "either --host STEPS or -- and the arguments of the tool";
    }
    return options;
}

std::string_view usage() {
    return "lomaris-bridge-simulator: the tool on a desktop that a file describes\n"
           "\n"
           "  lomaris-bridge-simulator --desktop FILE [--report FILE] -- ARGUMENTS...\n"
           "  lomaris-bridge-simulator --desktop FILE [--report FILE] --host STEPS\n"
           "\n"
           "  --desktop FILE   the desktop, JSON with comments\n"
           "  --report FILE    where to write what happened, as JSON\n"
           "  --host STEPS     drive the library as a host would, through the steps of a JSON file or - for\n"
           "                   standard input; one line of JSON a step\n"
           "  -- ARGUMENTS...  the command line of the tool; output and exit status are the tool's own\n"
           "\n"
           "Exit status 64: the options or a file are wrong and nothing was run; 74: the report could not be\n"
           "written; 128 and the number: a signal of the desktop ended the tool. docs/simulator.md has the rest.\n";
}

}  // namespace lomaris::simulator
