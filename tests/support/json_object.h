#pragma once

#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {

/// The members of a JSON object: each key with its value as JSON text.
using JsonMembers = std::vector<std::pair<std::string, std::string>>;

/// A JSON object of these members, with one of them replaced, or left out if `value` is empty. It begins with an
/// additional member of unknown name.
[[nodiscard]] inline std::string objectOf(const JsonMembers& members, const std::string& key,
                                          const std::string& value) {
    std::string object = R"({"unknown":[1,{"path":null}])";
    for (const auto& [name, usual] : members) {
        const std::string& chosen = name == key ? value : usual;
        if (!chosen.empty()) {
            object += ",\"" + name + "\":" + chosen;
        }
    }
    return object + "}";
}

}  // namespace lomaris::test
