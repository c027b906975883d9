// Runs the scenarios: lomaris_scenarios [--regenerate] [NAME...], or all of them without a name. A scenario fails if
// its outcome is not the expected one or if its expectation is missing. --regenerate writes the outcomes as the new
// expectations, to be reviewed by a person.

#include "simulator/json_text.h"
#include "tests/simulator/scenario.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

enum class Mode { compare, regenerate };

/// Returns what is wrong with the outcome. Empty if nothing is.
std::string problemWith(const Scenario& scenario, Mode mode) {
    const std::string actual = simulator::writtenForPeople(outcomeOf(scenario));
    if (mode == Mode::regenerate) {
        std::ofstream stream(scenario.expectation, std::ios::binary);
        stream << actual << std::flush;
        return stream ? "" : "the expectation cannot be written\n";
    }
    std::ifstream stream(scenario.expectation, std::ios::binary);
    if (!stream) {
        return "the expectation " + scenario.expectation.filename().string() + " is missing\n";
    }
    return differenceOf({std::istreambuf_iterator<char>(stream), {}}, actual);
}

bool passes(const Scenario& scenario, Mode mode) {
    std::string problem;
    try {
        problem = problemWith(scenario, mode);
    } catch (const std::exception& error) {
        problem = std::string(error.what()) + "\n";
    }
    if (!problem.empty()) {
        std::printf("FAILED %s\n%s", scenario.name.c_str(), problem.c_str());
    }
    return problem.empty();
}

int run(std::vector<std::string> names) {
    const Mode mode = std::erase(names, "--regenerate") > 0 ? Mode::regenerate : Mode::compare;
    const bool runsAll = names.empty();
    const std::vector<Scenario> scenarios = findScenarios(LOMARIS_SCENARIOS);
    int failures = 0;
    int runs = 0;
    for (const Scenario& scenario : scenarios) {
        if (runsAll || std::erase(names, scenario.name) > 0) {
            ++runs;
            failures += passes(scenario, mode) ? 0 : 1;
        }
    }
    for (const std::string& name : names) {
        std::printf("FAILED %s\nthere is no such scenario\n", name.c_str());
        ++failures;
    }
    const auto orphans = runsAll ? findOrphans(LOMARIS_SCENARIOS) : std::vector<std::filesystem::path>();
    for (const auto& orphan : orphans) {
        std::printf("FAILED %s\nthis expectation belongs to no scenario\n", orphan.c_str());
        ++failures;
    }
    std::printf("%d scenarios, %d failures\n", runs, failures);
    return failures == 0 && runs > 0 ? 0 : 1;
}

}  // namespace
}  // namespace lomaris::test

int main(int argumentCount, char** argumentVector) {
    std::vector<std::string> names;
    for (int index = 1; index < argumentCount; ++index) {
        names.emplace_back(argumentVector[index]);
    }
    return lomaris::test::run(names);
}
