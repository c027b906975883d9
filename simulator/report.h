#pragma once

#include "simulator/json_file.h"
#include "simulator/stage.h"

#include <chrono>

namespace lomaris::simulator {

/// Returns both traces of this process, by the names of their entries.
[[nodiscard]] Json tracesAsJson();

/// Returns the current state of the desktop: the front application, the counters, the pasteboard and the texts.
[[nodiscard]] Json stateOf(const Stage& stage);

/// The outcome of a run.
struct RunOutcome {
    int status = 0;
    /// The state of the desktop when the command returned.
    Json whenDone;
    Moment virtualTime{0};
    std::chrono::nanoseconds realTime{0};
};

/// Returns the whole report; docs/simulator.md lists its members. Only "real" differs between runs.
[[nodiscard]] Json reportOf(const RunOutcome& outcome, const Stage& stage);

}  // namespace lomaris::simulator
