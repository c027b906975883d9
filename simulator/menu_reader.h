#pragma once

#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <vector>

namespace lomaris::simulator {

/// The menus of a menu bar, without what their elements answer beyond that.
[[nodiscard]] std::vector<Menu> readMenus(const JsonNode& node, const Stage& stage);

}  // namespace lomaris::simulator
