#pragma once

#include "tests/faults/sweep_run.h"

namespace lomaris::test {

/// The documents of the two applications.
struct Documents {
    Document target;
    Document other;
};

/// What the documents must be when the process has ended: as they were, changed by what happened and by nothing else.
///
/// What the boundary leaves to chance is followed here, not asked for: a key that goes to the session reaches whoever
/// has the keyboard when it is posted, and a target pastes what stands on the pasteboard when it comes to it.
[[nodiscard]] Documents expectedDocuments(const Scenario& scenario, const Run& run);

}  // namespace lomaris::test
