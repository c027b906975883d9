#include "bridge/execute.h"

#include "accessibility/model/bridge_error.h"
#include "accessibility/service/accessibility_service.h"
#include "bridge/bridge_input_error.h"
#include "bridge/command_line_options.h"
#include "bridge/standard_stream_error.h"
#include "text/utf8.h"

#include <chrono>
#include <cmath>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace lomaris {

namespace {

constexpr std::string_view errorPrefix = "Lomaris macOS bridge: ";

/// Runs the commands, one overload for each.
class Executor {
public:
    Executor(Platform& platform, StandardStreams& streams)
        : platform_(platform), streams_(streams), service_(platform) {}

    int operator()(const command::PermissionStatus& command) {
        const bool granted = service_.hasPermission(command.prompt ? TrustPrompt::ask : TrustPrompt::none);
        writeLine(granted ? "granted" : "not-granted");
        return granted ? exit_status::success : exit_status::notGranted;
    }

    int operator()(const command::ReadSelection& command) {
        wait(command.delay);
        if (command.json) {
            writeJson(service_.readSelectionJSON(command.limits));
        } else {
            writeLine(utf8FromText(service_.readSelectionText(command.limits)));
        }
        return exit_status::success;
    }

    int operator()(const command::ReplaceSelection& command) {
        const Text replacement = command.replacement ? *command.replacement : readReplacementFromStandardInput();
        wait(command.delay);
        service_.replaceCurrentSelection(replacement, command.limits);
        writeLine("replaced");
        return exit_status::success;
    }

    int operator()(const command::ReplaceSelectionRequest& command) {
        const std::string request = readStandardInput();
        if (request.empty()) {
            throw BridgeInputError::missingGuardedReplacementRequest();
        }
        wait(command.delay);
        service_.replaceSelectionIfCurrent(request, command.limits);
        writeLine("replaced");
        return exit_status::success;
    }

    int operator()(const command::DiagnoseSelection& command) {
        wait(command.delay);
        writeJson(service_.selectionDiagnosticJSON());
        return exit_status::success;
    }

    int operator()(const command::CompatibilityCheck& command) {
        wait(command.delay);
        writeJson(service_.compatibilityDiagnosticJSON());
        return exit_status::success;
    }

    int operator()(const command::Help& /*command*/) {
        writeLine(utf8FromText(CommandLineOptions::usage()));
        return exit_status::success;
    }

private:
    /// Gives the user time to switch to the target application after starting the tool in a terminal.
    void wait(double seconds) {
        if (seconds > 0) {
            platform_.scheduling().sleep(Duration(std::llround(seconds * 1e9)));
        }
    }

    /// Reads standard input to its end. May return an empty string.
    std::string readStandardInput() {
        auto bytes = streams_.readInput();
        if (!bytes) {
            throw StandardStreamError::inputFailed();
        }
        return std::move(*bytes);
    }

    /// Reads the replacement text unchanged, including a final line feed.
    Text readReplacementFromStandardInput() {
        auto text = textFromValidUtf8(readStandardInput());
        if (!text) {
            throw BridgeError::invalidInput(u"Replacement input must be valid UTF-8.");
        }
        if (text->empty()) {
            throw BridgeError::invalidInput(
                u"Replacement text is empty. Supply --replacement <text> or pipe text to stdin.");
        }
        return std::move(*text);
    }

    void write(std::string_view bytes) {
        if (!streams_.writeOutput(bytes)) {
            throw StandardStreamError::outputFailed();
        }
    }

    /// Writes the line feed separately, to avoid copying the JSON, which may be long.
    void writeJson(std::string_view json) {
        write(json);
        write("\n");
    }

    void writeLine(std::string line) {
        line.push_back('\n');
        write(line);
    }

    Platform& platform_;
    StandardStreams& streams_;
    LomarisAccessibilityService service_;
};

void writeError(StandardStreams& streams, std::string_view message) {
    std::string line(errorPrefix);
    line += message;
    line.push_back('\n');
    streams.writeError(line);
}

}  // namespace

int execute(const BridgeCommand& command, Platform& platform, StandardStreams& streams) {
    return std::visit(Executor(platform, streams), command);
}

int runCommandLine(std::span<const Text> arguments, Platform& platform, StandardStreams& streams) {
    try {
        return execute(CommandLineOptions::parse(arguments), platform, streams);
    } catch (const BridgeError& error) {
        writeError(streams, utf8FromText(error.errorDescription()));
    } catch (const BridgeInputError& error) {
        writeError(streams, utf8FromText(error.errorDescription()));
    } catch (const StandardStreamError& error) {
        writeError(streams, utf8FromText(error.errorDescription()));
    } catch (const std::bad_alloc&) {
        writeError(streams, "Not enough memory. Close some applications and try again.");
    } catch (const std::exception& error) {
        writeError(streams, error.what());
    }
    return exit_status::failure;
}

}  // namespace lomaris
