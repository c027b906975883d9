#pragma once

#include "accessibility/model/context_limits.h"
#include "simulator/host.h"
#include "simulator/json_node.h"

/// The steps of a host that use the library without a session.
namespace lomaris::simulator {

/// Reads `beforeLimit` and `afterLimit` of a step.
[[nodiscard]] ContextLimits readLimits(const JsonNode& node);

/// Each function reads a whole step, an object with the verb as a key.
[[nodiscard]] HostAct readReadStep(const JsonNode& node);
[[nodiscard]] HostAct readReplaceStep(const JsonNode& node);
[[nodiscard]] HostAct readReplaceByRequestStep(const JsonNode& node);
[[nodiscard]] HostAct readDiagnoseStep(const JsonNode& node);
[[nodiscard]] HostAct readPermissionStep(const JsonNode& node);

}  // namespace lomaris::simulator
