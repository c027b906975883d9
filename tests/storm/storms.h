#pragma once

#include "tests/storm/findings.h"

#include <chrono>

namespace lomaris::test {

/// The settings of one storm.
struct StormSettings {
    int rounds = 1;
    /// The time that the clipboard manager, if any, takes to notice a change.
    std::chrono::milliseconds timeForManager{};
};

/// Two reads at once.
[[nodiscard]] Findings runPairsOfReads(const StormSettings& settings);

/// A paste, and a read or another paste that starts a little later.
[[nodiscard]] Findings runPastesWithOthers(const StormSettings& settings);

/// Reads and pastes that are killed at any moment, each followed by a read.
[[nodiscard]] Findings runKilledCalls(const StormSettings& settings);

/// Reads just after which another program takes the clipboard, so that no process of the tool may be left.
[[nodiscard]] Findings runCopiesAfterCalls(const StormSettings& settings);

/// Reads while nothing is selected.
[[nodiscard]] Findings runReadsOfNothing(const StormSettings& settings);

}  // namespace lomaris::test
