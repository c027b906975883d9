#pragma once

#include "tests/faults/sweep_run.h"

#include <string>
#include <vector>

namespace lomaris::test {

/// Checks the promises for a tool that was killed while a keeper existed. Returns a message for each broken promise.
///
/// 1. In the end the clipboard has the user's contents, including what was copied after the kill, and any process can
///    use it.
/// 2. A paste that was posted is completed. A deletion before it remains if the tool was killed in between. Apart from
///    a direct write, nothing else changes in the document.
/// 3. The document of the other application is unchanged.
[[nodiscard]] std::vector<std::string> brokenPromisesOfAKill(const Scenario& scenario, const Run& run);

}  // namespace lomaris::test
