#pragma once

#include "tests/faults/sweep_run.h"

#include <optional>
#include <string>

namespace lomaris::test {

/// The message for a broken promise; nullopt if the promise is kept.
using Broken = std::optional<std::string>;

/// The promises about what the tool writes, and which selection it replaces.

[[nodiscard]] Broken writesOnceAndReportsIt(const Scenario& scenario, const Run& run);
[[nodiscard]] Broken deletesOnlyForAWebAddress(const Scenario& scenario, const Run& run);
/// At the last look the selection is the same as when the tool decided to replace it.
[[nodiscard]] Broken writesOverWhatItSaw(const Scenario& scenario, const Run& run);
/// At the last look the selection is the one that the request of a guarded replacement specifies.
[[nodiscard]] Broken writesOverWhatWasExpected(const Scenario& scenario, const Run& run);

}  // namespace lomaris::test
