// Runs the tool, or a host of the library, on a simulated desktop that a file describes.

#include "bridge/execute.h"
#include "platform/posix/process_streams.h"
#include "simulator/desktop_file.h"
#include "simulator/file_error.h"
#include "simulator/host_steps.h"
#include "simulator/json_text.h"
#include "simulator/options.h"
#include "simulator/report.h"
#include "simulator/tool_streams.h"
#include "text/utf8.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace lomaris::simulator {
namespace {

constexpr int unusable = 64;
constexpr int reportFailed = 74;
constexpr int signalBase = 128;

void complain(StandardStreams& streams, std::string_view message) {
    streams.writeError("lomaris-bridge-simulator: " + std::string(message) + "\n");
}

std::string contentsOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string contents;
    // A directory can be opened as a stream. Reading it throws, which only the stream's own `read` catches.
    for (std::array<char, 4096> piece{}; stream.read(piece.data(), piece.size()) || stream.gcount() > 0;) {
        contents.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.is_open() || stream.bad()) {
        throw FileError("", "expected a file that can be read");
    }
    return contents;
}

/// Reads a file with `read`. Adds the name of the file to a `FileError` that it throws.
template <typename Read>
auto reading(const std::string& file, Read read) {
    try {
        return read(file);
    } catch (const FileError& error) {
        throw FileError(file, error.what());
    }
}

std::unique_ptr<Stage> readStage(const std::string& file) {
    return reading(file, [](const std::string& path) { return readDesktop(JsonNode(parseJson(contentsOf(path)))); });
}

std::vector<HostStep> readSteps(const std::string& file, Stage& stage, StandardStreams& streams) {
    const auto contents = [&streams](const std::string& path) {
        return path == "-" ? streams.readInput().value_or("") : contentsOf(path);
    };
    return reading(file,
                   [&](const std::string& path) { return readHostSteps(JsonNode(parseJson(contents(path))), stage); });
}

int runTool(const Options& options, Stage& stage, StandardStreams& streams) {
    std::vector<Text> arguments;
    for (const std::string& argument : options.arguments) {
        arguments.push_back(textFromUtf8(argument));
    }
    ToolStreams toolStreams(streams, stage.desktop);
    return runCommandLine(arguments, stage.desktop, toolStreams);
}

int runHost(const std::vector<HostStep>& steps, StandardStreams& streams) {
    return takeSteps(steps, streams) ? exit_status::success : exit_status::failure;
}

template <typename Work>
RunOutcome runOn(Stage& stage, Work work) {
    RunOutcome outcome;
    const auto start = std::chrono::steady_clock::now();
    try {
        outcome.status = work();
    } catch (const SimulatedTermination&) {
        // The status is set below, also for a signal that arrives while the process ends on its own.
    }
    outcome.virtualTime = stage.desktop.now();
    outcome.whenDone = stateOf(stage);
    stage.desktop.endProcess();
    if (const auto signal = stage.desktop.endedBySignal()) {
        outcome.status = signalBase + *signal;
    }
    outcome.realTime = std::chrono::steady_clock::now() - start;
    return outcome;
}

int run(const Options& options, StandardStreams& streams) {
    const std::unique_ptr<Stage> stage = readStage(options.desktop);
    std::vector<HostStep> steps;
    if (options.host) {
        steps = readSteps(*options.host, *stage, streams);
    }
    std::ofstream report;
    if (options.report) {
        report.open(*options.report, std::ios::binary);
        if (!report) {
            throw FileError(*options.report, "expected a file that can be written");
        }
    }
    const RunOutcome outcome =
        runOn(*stage, [&] { return options.host ? runHost(steps, streams) : runTool(options, *stage, streams); });
    if (options.report) {
        report << writtenForPeople(reportOf(outcome, *stage)) << std::flush;
        if (!report) {
            complain(streams, *options.report + ": could not be written");
            return reportFailed;
        }
    }
    return outcome.status;
}

int simulate(const std::vector<std::string>& arguments, StandardStreams& streams) {
    const auto read = readOptions(arguments);
    if (const auto* complaint = std::get_if<std::string>(&read)) {
        complain(streams, *complaint);
        return unusable;
    }
    const auto& options = std::get<Options>(read);
    if (options.help) {
        return streams.writeOutput(usage()) ? exit_status::success : exit_status::failure;
    }
    try {
        return run(options, streams);
    } catch (const FileError& error) {
        complain(streams, error.what());
        return unusable;
    }
}

}  // namespace
}  // namespace lomaris::simulator

int main(int argumentCount, char** argumentVector) {
    lomaris::ProcessStreams streams;
    std::vector<std::string> arguments;
    for (int index = 1; index < argumentCount; ++index) {
        arguments.emplace_back(argumentVector[index]);
    }
    return lomaris::simulator::simulate(arguments, streams);
}
