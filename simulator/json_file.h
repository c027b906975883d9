#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace lomaris::simulator {

/// JSON whose objects keep the order of the file.
using Json = nlohmann::ordered_json;

/// The contents of a file as JSON; comments, `//` and `/* */`, are allowed. Throws `FileError` where it is no JSON,
/// where a key stands twice in an object, a number is too large or more than 500 arrays and objects stand in each
/// other.
[[nodiscard]] Json parseJson(std::string_view contents);

}  // namespace lomaris::simulator
