#pragma once

#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <vector>

namespace lomaris::simulator {

/// Reads the menus of a menu bar, without the scripts of their elements.
[[nodiscard]] std::vector<Menu> readMenus(const JsonNode& node, const Stage& stage);

}  // namespace lomaris::simulator
