#pragma once

#include "tests/faults/sweep_run.h"

namespace lomaris::test {

/// The documents of the two applications.
struct Documents {
    Document target;
    Document other;
};

/// The expected documents after the process has ended: the documents before, changed only by the happenings of the run.
///
/// If the boundary permits several results, the happenings decide: a key that is posted to the session reaches the
/// application that has the keyboard focus at that time, and the target pastes what is on the pasteboard when it
/// reacts.
[[nodiscard]] Documents expectedDocuments(const Scenario& scenario, const Run& run);

}  // namespace lomaris::test
