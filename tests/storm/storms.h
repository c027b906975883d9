#pragma once

#include "tests/storm/findings.h"

#include <chrono>

namespace lomaris::test {

/// How a storm runs.
struct StormCourse {
    int rounds = 1;
    /// How long the clipboard manager, if any, takes to notice a change.
    std::chrono::milliseconds timeForManager{};
};

/// Two reads at once.
[[nodiscard]] Findings runPairsOfReads(const StormCourse& course);

/// A paste, and a read or another paste that starts a little later.
[[nodiscard]] Findings runPastesWithOthers(const StormCourse& course);

/// Reads and pastes that are killed at any moment, each followed by a read.
[[nodiscard]] Findings runKilledCalls(const StormCourse& course);

/// Reads after which another program owns the clipboard at once, so that no process of the tool has anything to serve.
[[nodiscard]] Findings runCopiesAfterCalls(const StormCourse& course);

/// Reads while nothing is selected.
[[nodiscard]] Findings runReadsOfNothing(const StormCourse& course);

}  // namespace lomaris::test
