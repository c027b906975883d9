#pragma once

#include "tests/faults/sweep_run.h"

#include <string>
#include <vector>

namespace lomaris::test {

/// Checks what the tool promises under any faults. Returns a message for each broken promise, normally none.
///
/// 1. It writes either one error line or its result, and the exit status says which.
/// 2. It ends in time.
/// 3. The user's clipboard is unchanged, except for the text of a successful paste. A clipboard that another operation
///    uses is left as it is.
/// 4. Each key stroke that it creates is posted once, before it creates the next. That a posted stroke presses and
///    releases the key is promised by the boundary and not checked here.
/// 5. It writes what it was told to write, once, and reports success only if it did. It deletes only before pasting a
///    web address.
/// 6. It replaces only the selection that it was told to replace, as far as its last look could show. A guarded
///    replacement without a range to compare is performed only if its first sample of the input counters shows no input
///    by the user, unless the selection was copied anew and no range is expected.
/// 7. Nothing else changes in the documents.
/// 8. What it reads was selected at a time at which it looked.
[[nodiscard]] std::vector<std::string> brokenPromises(const Scenario& scenario, const Run& run);

/// The longest virtual time that the command may take.
[[nodiscard]] Duration longestTime(const Scenario& scenario);

}  // namespace lomaris::test
