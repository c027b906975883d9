#pragma once

#include "tests/faults/sweep_run.h"

#include <string>
#include <vector>

namespace lomaris::test {

/// What the tool promises whatever goes wrong around it. Answers the broken ones, each in words; none is the rule.
///
/// 1. It speaks once: one error line, or its result; and its exit status says which.
/// 2. It ends in time.
/// 3. The user's clipboard is what it was, but for the text of a successful paste.
/// 4. Every key that it presses is released.
/// 5. It writes what it was told to write, once, and only where it then reports success.
/// 6. It writes only over the selection that it was told to replace, as far as its last look could show.
/// 7. The documents hold nothing else in the end.
/// 8. What it reads was selected at a time at which it looked.
[[nodiscard]] std::vector<std::string> brokenPromises(const Scenario& scenario, const Run& run);

/// The longest virtual time that the command may take.
[[nodiscard]] Duration longestTime(const Scenario& scenario);

}  // namespace lomaris::test
