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

/// All lines of `tests/vectors/<name>.jsonl`. Throws if the file is missing, empty or malformed, so that no test passes
/// without data.
[[nodiscard]] std::vector<Vector> readVectors(std::string_view name);

/// The text of an array of UTF-16 code units.
[[nodiscard]] Text textOf(const nlohmann::json& codeUnits);

/// The decoded bytes of a Base64 string.
[[nodiscard]] std::string bytesOf(const nlohmann::json& base64);

}  // namespace lomaris::test
