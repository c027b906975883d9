#pragma once

#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {

/// Members of a JSON object: keys, and values as they are written.
using JsonMembers = std::vector<std::pair<std::string, std::string>>;

/// An object of these members with one of them replaced, or left out where `value` is empty. One more stands before
/// them that nobody knows.
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
