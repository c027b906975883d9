#pragma once

#include "simulator/host.h"
#include "simulator/json_node.h"

#include <functional>
#include <set>
#include <string>

namespace lomaris::simulator {

/// Reads the steps that use sessions, in the order of the file: a session must be captured before it is used. Each
/// function reads a whole step, an object with the verb as a key.
class SessionSteps {
public:
    [[nodiscard]] HostAct readCapture(const JsonNode& node);
    [[nodiscard]] HostAct readMarkSubmitted(const JsonNode& node) const;
    [[nodiscard]] HostAct readReplaceIfCurrent(const JsonNode& node) const;
    [[nodiscard]] HostAct readDrop(const JsonNode& node) const;

private:
    [[nodiscard]] HostAct withSession(const JsonNode& name, std::function<Json(AppSelectionSession&)> use) const;
    [[nodiscard]] std::string knownName(const JsonNode& node) const;

    std::set<std::string> names_;
};

}  // namespace lomaris::simulator
