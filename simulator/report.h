#pragma once

#include "simulator/json_file.h"
#include "simulator/stage.h"

#include <chrono>

namespace lomaris::simulator {

/// Both traces of this process, by the names of their entries.
[[nodiscard]] Json tracesAsJson();

/// What is known of the desktop at this moment: who is in front, the counters, the pasteboard and the texts.
[[nodiscard]] Json stateOf(const Stage& stage);

/// A run that is over.
struct RunOutcome {
    int status = 0;
    /// When the command returned.
    Json whenDone;
    Moment virtualTime{0};
    std::chrono::nanoseconds realTime{0};
};

/// The whole report; docs/simulator.md lists its members. What differs from run to run stands under "real" alone.
[[nodiscard]] Json reportOf(const RunOutcome& outcome, const Stage& stage);

}  // namespace lomaris::simulator
