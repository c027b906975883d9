#pragma once

#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::simulator {

/// The simulated results of an element's operations, as a desktop file defines them: the keys `attributes`, `settable`,
/// `set`, `actions` and `processIdentifierFails`.
struct ElementScript {
    struct Set {
        std::string name;
        SetEffect effect = SetEffect::none;
        AXError answer = AXError::success;
        std::vector<Reaction> reactions;
    };

    struct Action {
        std::string name;
        AXError answer = AXError::success;
        std::vector<Reaction> reactions;
    };

    std::vector<std::pair<std::string, std::vector<AttributeAnswer>>> answers;
    std::vector<std::pair<std::string, SettableAnswer>> settable;
    std::vector<Set> sets;
    std::vector<Action> actions;
    std::optional<bool> processIdentifierFails;
};

/// Returns the keys of a script and `others`, the further keys that the object may have.
[[nodiscard]] std::vector<std::string_view> scriptKeysAnd(std::vector<std::string_view> others);

/// Reads the keys of a script from an object, which may have other keys. Throws `FileError`.
[[nodiscard]] ElementScript readElementScript(const JsonNode& node, Stage& stage);

/// Applies the script to the element. What the script does not contain is unchanged.
void apply(const ElementScript& script, SimulatedElement element);

}  // namespace lomaris::simulator
