#pragma once

#include "text/text.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {

/// One line of a reference file: its number, counted from 1, and its contents.
struct Vector {
    int line = 0;
    nlohmann::json value;
};

/// All lines of `tests/vectors/<name>.jsonl`. A missing, empty or malformed file throws, so that no test passes over
/// nothing.
[[nodiscard]] std::vector<Vector> readVectors(std::string_view name);

/// An array of UTF-16 code units as a text.
[[nodiscard]] Text textOf(const nlohmann::json& codeUnits);

/// The bytes behind a Base64 string.
[[nodiscard]] std::string bytesOf(const nlohmann::json& base64);

}  // namespace lomaris::test
