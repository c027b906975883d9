#pragma once

#include "text/text.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lomaris {

struct JsonNull {};

/// A number as it was written; what it means depends on the type that is asked for.
struct JsonNumber {
    std::string digits;
};

struct JsonValue;

struct JsonMember;

using JsonArray = std::vector<JsonValue>;

/// The members in the order of the document, equal keys included.
using JsonObject = std::vector<JsonMember>;

/// A parsed JSON document.
struct JsonValue {
    std::variant<JsonNull, bool, JsonNumber, Text, JsonArray, JsonObject> value;
};

struct JsonMember {
    Text key;
    JsonValue value;
};

/// Parses one JSON document from UTF-8. Nothing where the bytes are not exactly one well-formed document: ill-formed
/// UTF-8, a lone surrogate escape, a raw control character in a string, a comment, a trailing comma, a number
/// beyond the range of a double, anything after the document, or containers nested deeper than 512 levels.
[[nodiscard]] std::optional<JsonValue> parseJson(std::string_view bytes);

/// The number as a signed 64-bit integer, where its value is one: 812, 812.0 and 8.12e2 are. Nothing where it has a
/// fraction or lies outside of the range.
[[nodiscard]] std::optional<std::int64_t> integerValue(const JsonNumber& number);

}  // namespace lomaris
