#pragma once

#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <vector>

namespace lomaris::simulator {

/// Reads an action of a desktop file: an object with one action key and an optional delay (`after`), or an array of
/// actions. Used for the user, other programs and the reactions of applications. Throws `FileError`. The stage must
/// outlive the result.
[[nodiscard]] Reaction readAction(const JsonNode& node, Stage& stage);

/// Reads how an application reacts: one action, or several under "inTurn".
[[nodiscard]] std::vector<Reaction> readReactions(const JsonNode& node, Stage& stage);

/// Reads the four input counters. Those that the object does not contain are taken from `counters`.
[[nodiscard]] InputCounters readCounters(const JsonNode& node, InputCounters counters);

}  // namespace lomaris::simulator
