#pragma once

#include "simulator/json_file.h"

#include <filesystem>
#include <string>
#include <vector>

namespace lomaris::test {

/// A scenario: a desktop file whose "run" says what happens on it, with the expected outcome beside it.
struct Scenario {
    /// "theme/name".
    std::string name;
    std::filesystem::path desktop;
    /// May be missing.
    std::filesystem::path expectation;
};

/// All scenarios below a folder, by name.
[[nodiscard]] std::vector<Scenario> findScenarios(const std::filesystem::path& folder);

/// Expectations below the folder that belong to no scenario.
[[nodiscard]] std::vector<std::filesystem::path> findOrphans(const std::filesystem::path& folder);

/// Runs a scenario and answers what came of it: output, error, status, and the report without what differs from run to
/// run; the journal only where the scenario wants it. Throws where the scenario is wrong.
[[nodiscard]] simulator::Json outcomeOf(const Scenario& scenario);

/// How two texts differ, line by line, with three lines around each change; empty where they are the same.
[[nodiscard]] std::string differenceOf(const std::string& expected, const std::string& actual);

}  // namespace lomaris::test
