#pragma once

#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <memory>

namespace lomaris::simulator {

/// Builds the desktop that a file describes; see docs/simulator.md. Throws `FileError` if the file is invalid.
[[nodiscard]] std::unique_ptr<Stage> readDesktop(const JsonNode& file);

}  // namespace lomaris::simulator
