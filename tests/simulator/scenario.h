#pragma once

#include "simulator/json_file.h"

#include <filesystem>
#include <string>
#include <vector>

namespace lomaris::test {

/// A scenario: a desktop file whose "run" describes a run on that desktop, and a file with the expected outcome.
struct Scenario {
    /// "theme/name".
    std::string name;
    std::filesystem::path desktop;
    /// May be missing.
    std::filesystem::path expectation;
};

/// Returns all scenarios below a folder, sorted by path.
[[nodiscard]] std::vector<Scenario> findScenarios(const std::filesystem::path& folder);

/// Returns the expectations below the folder that belong to no scenario.
[[nodiscard]] std::vector<std::filesystem::path> findOrphans(const std::filesystem::path& folder);

/// Runs a scenario and returns its outcome: output, error, status, and the report without what differs from run to run.
/// The journal is included only if the scenario requests it. Throws if the scenario is wrong.
[[nodiscard]] simulator::Json outcomeOf(const Scenario& scenario);

/// Returns the difference of two texts by lines, with three lines around each change. Empty if they are the same.
[[nodiscard]] std::string differenceOf(const std::string& expected, const std::string& actual);

}  // namespace lomaris::test
