#include "tests/simulator/scenario.h"

#include "simulator/file_error.h"
#include "simulator/json_node.h"
#include "simulator/value_reader.h"
#include "tests/support/process.h"
#include "tests/support/temporary_directory.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace lomaris::test {
namespace {

using simulator::Json;
using simulator::JsonNode;

constexpr std::string_view expectedEnd = ".expected.json";
constexpr std::string_view desktopEnd = ".json";

std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw simulator::FileError(file.string(), "cannot be read");
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Returns the lines with their line feeds, so that the list contains the exact text.
Json linesOf(const std::string& text) {
    Json lines = Json::array();
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t feed = text.find('\n', start);
        const std::size_t end = feed == std::string::npos ? text.size() : feed + 1;
        lines.push_back(text.substr(start, end - start));
        start = end;
    }
    return lines;
}

/// Returns the outputs of the host steps, one JSON object per line of `output`.
Json repliesOf(const std::string& output) {
    Json answers = Json::array();
    for (const Json& line : linesOf(output)) {
        answers.push_back(Json::parse(line.get<std::string>()));
    }
    return answers;
}

std::vector<std::filesystem::path> filesBelow(const std::filesystem::path& folder, std::string_view end) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().string().ends_with(end)) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::filesystem::path withEnd(const std::filesystem::path& file, std::string_view end, std::string_view newEnd) {
    const std::string path = file.string();
    return path.substr(0, path.size() - end.size()) + std::string(newEnd);
}

}  // namespace

std::vector<Scenario> findScenarios(const std::filesystem::path& folder) {
    std::vector<Scenario> scenarios;
    for (const auto& file : filesBelow(folder, desktopEnd)) {
        if (file.string().ends_with(expectedEnd)) {
            continue;
        }
        const std::string name = withEnd(file.lexically_relative(folder), desktopEnd, "").generic_string();
        scenarios.push_back({name, file, withEnd(file, desktopEnd, expectedEnd)});
    }
    return scenarios;
}

std::vector<std::filesystem::path> findOrphans(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> orphans = filesBelow(folder, expectedEnd);
    std::erase_if(orphans, [](const std::filesystem::path& file) {
        return std::filesystem::exists(withEnd(file, expectedEnd, desktopEnd));
    });
    return orphans;
}

Json outcomeOf(const Scenario& scenario) {
    const Json file = simulator::parseJson(contentsOf(scenario.desktop));
    const JsonNode run = JsonNode(file).get("run");
    run.allowKeys({"arguments", "input", "steps", "journal"});

    const TemporaryDirectory directory;
    const std::filesystem::path report = directory.path() / "report.json";
    std::vector<std::string> command{LOMARIS_SIMULATOR, "--desktop", scenario.desktop.string(), "--report",
                                     report.string()};
    ProcessOptions options;
    if (const auto steps = run.find("steps")) {
        command.insert(command.end(), {"--host", "-"});
        options.input = steps->value().dump();
    } else {
        command.emplace_back("--");
        for (const JsonNode& argument : run.get("arguments").members()) {
            command.push_back(argument.string());
        }
        const auto input = run.find("input");
        options.input = input ? simulator::readBytes(*input) : "";
    }
    const ProcessResult result = runProcess(command, options);
    constexpr int unusable = 64;
    if (result.status == unusable) {
        throw std::runtime_error(result.error);
    }

    Json outcome = Json::object();
    outcome["status"] = result.status;
    outcome["output"] = run.find("steps") && result.status == 0 ? repliesOf(result.output) : linesOf(result.output);
    outcome["error"] = linesOf(result.error);
    if (std::filesystem::exists(report)) {
        Json reported = Json::parse(contentsOf(report));
        reported.erase("real");
        const auto journal = run.find("journal");
        if (!journal || !journal->boolean()) {
            reported.erase("journal");
        }
        outcome["report"] = std::move(reported);
    }
    return outcome;
}

}  // namespace lomaris::test
