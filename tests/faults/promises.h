#pragma once

#include "tests/faults/sweep_run.h"

#include <string>
#include <vector>

namespace lomaris::test {

/// What the tool promises whatever goes wrong around it. Answers the broken ones, each in words; none is the rule.
///
/// 1. It speaks once: one error line, or its result; and its exit status says which.
/// 2. It ends in time.
/// 3. The user's clipboard is what it was, but for the text of a successful paste. A clipboard that another operation
///    uses is not touched.
/// 4. Each key stroke that it makes is posted once, before it makes the next one. That a posted stroke is a key pressed
///    and released is what the boundary promises, and not looked at here.
/// 5. It writes what it was told to write, once, and only where it then reports success. It deletes only before it
///    pastes a web address.
/// 6. It writes only over the selection that it was told to replace, as far as its last look could show. A guarded
///    replacement that has no range to compare goes ahead only where its first look at the input counters shows that
///    the user touched nothing, unless the selection was copied anew without a range to expect.
/// 7. The documents hold nothing else in the end.
/// 8. What it reads was selected at a time at which it looked.
[[nodiscard]] std::vector<std::string> brokenPromises(const Scenario& scenario, const Run& run);

/// The longest virtual time that the command may take.
[[nodiscard]] Duration longestTime(const Scenario& scenario);

}  // namespace lomaris::test
