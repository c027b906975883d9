#pragma once

#include "accessibility/service/accessibility_service.h"
#include "simulator/json_file.h"
#include "simulator/stage.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace lomaris::simulator {

/// A program that embeds the library: a service, and the sessions that it captured, by name.
struct Host {
    explicit Host(Stage& where) : stage(where), service(where.desktop) {}

    Stage& stage;
    LomarisAccessibilityService service;
    std::map<std::string, std::unique_ptr<AppSelectionSession>, std::less<>> sessions;
};

/// The action of one step. Returns the result that the output line shows. Throws `BridgeError`.
using HostAct = std::function<Json(Host& host)>;

}  // namespace lomaris::simulator
