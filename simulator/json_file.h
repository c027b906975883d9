#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace lomaris::simulator {

/// JSON whose objects keep the order of the file.
using Json = nlohmann::ordered_json;

/// Parses JSON in which comments, `//` and `/* */`, are allowed. Throws `FileError` if it is not JSON, if a key occurs
/// twice in an object, if a number is too large, or if more than 500 arrays and objects are nested.
[[nodiscard]] Json parseJson(std::string_view contents);

}  // namespace lomaris::simulator
