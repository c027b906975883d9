#pragma once

#include "tests/faults/sweep_run.h"

#include <optional>
#include <string>

namespace lomaris::test {

/// A broken promise, in words; nothing where it is kept.
using Broken = std::optional<std::string>;

/// The promises about what the tool writes, and over what.

[[nodiscard]] Broken writesOnceAndReportsIt(const Scenario& scenario, const Run& run);
[[nodiscard]] Broken deletesOnlyForAWebAddress(const Scenario& scenario, const Run& run);
/// The selection is at the last look what it was when it was decided that it is to be replaced.
[[nodiscard]] Broken writesOverWhatItSaw(const Scenario& scenario, const Run& run);
/// The selection is at the last look the one that the request of a guarded replacement means.
[[nodiscard]] Broken writesOverWhatWasExpected(const Scenario& scenario, const Run& run);

}  // namespace lomaris::test
