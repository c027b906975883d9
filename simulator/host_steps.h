#pragma once

#include "platform/standard_streams.h"
#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <functional>
#include <vector>

namespace lomaris::simulator {

/// One step of a host, ready to be taken; its result is a line of output.
using HostStep = std::function<Json()>;

/// The steps of an array; docs/simulator.md lists them. Throws `FileError` where one is wrong. The stage must outlive
/// the steps.
[[nodiscard]] std::vector<HostStep> readHostSteps(const JsonNode& file, Stage& stage);

/// Takes the steps, one after the other, and writes a line of JSON for each; answers whether all could be written.
[[nodiscard]] bool takeSteps(const std::vector<HostStep>& steps, StandardStreams& streams);

}  // namespace lomaris::simulator
