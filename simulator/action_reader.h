#pragma once

#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <vector>

namespace lomaris::simulator {

/// What somebody does, as a desktop file writes it: an object with one verb, which may have a delay (`after`), or a
/// list of them. It is the same for a user, for another program and for an application that reacts. The stage must
/// outlive it.
[[nodiscard]] Reaction readAction(const JsonNode& node, Stage& stage);

/// How an application reacts: an action, or several under "inTurn".
[[nodiscard]] std::vector<Reaction> readReactions(const JsonNode& node, Stage& stage);

/// The four input counters; those that the object does not mention are as in `counters`.
[[nodiscard]] InputCounters readCounters(const JsonNode& node, InputCounters counters);

}  // namespace lomaris::simulator
