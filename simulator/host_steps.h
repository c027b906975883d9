#pragma once

#include "platform/standard_streams.h"
#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <functional>
#include <vector>

namespace lomaris::simulator {

/// Performs one step of a host and returns its output line.
using HostStep = std::function<Json()>;

/// Reads an array of steps, which docs/simulator.md lists. Throws `FileError` if one is invalid. The stage must outlive
/// the steps.
[[nodiscard]] std::vector<HostStep> readHostSteps(const JsonNode& file, Stage& stage);

/// Performs the steps in order and writes one line of JSON for each. Returns false if a line could not be written.
[[nodiscard]] bool takeSteps(const std::vector<HostStep>& steps, StandardStreams& streams);

}  // namespace lomaris::simulator
