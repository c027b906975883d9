#pragma once

#include "tests/faults/sweep_run.h"

#include <string>
#include <vector>

namespace lomaris::test {

/// What holds after the tool was killed, if a keeper exists. Returns the broken promises, each in words.
///
/// 1. The clipboard is the user's in the end, what was copied after the kill included, and any process can use it.
/// 2. A paste that was posted is completed. A deletion before it stays if the tool was killed in between. Nothing else
///    changes in the document but by a direct write.
/// 3. The document of the application behind is as it was.
[[nodiscard]] std::vector<std::string> brokenPromisesOfAKill(const Scenario& scenario, const Run& run);

}  // namespace lomaris::test
