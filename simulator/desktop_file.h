#pragma once

#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <memory>

namespace lomaris::simulator {

/// Builds the desktop that a file describes; docs/simulator.md says how. Throws `FileError` where the file is wrong.
[[nodiscard]] std::unique_ptr<Stage> readDesktop(const JsonNode& file);

}  // namespace lomaris::simulator
