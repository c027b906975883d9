#pragma once

#include "json/json_value.h"
#include "text/text.h"

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

namespace lomaris {

/// Reads the fields of one record from a JSON object. Missing and mismatched fields make the record incomplete: the
/// caller reads all fields and then checks `isComplete` once. If a key occurs twice, its first value counts. Unknown
/// keys are ignored but must be well-formed strings; their values are not decoded.
class JsonFields {
public:
    /// `keys` are all keys of the record, which must be string literals; only these can be read. The document of
    /// `value` must outlive the reader. If `value` is not an object, the record is incomplete.
    JsonFields(const JsonValue& value, std::initializer_list<std::string_view> keys);

    [[nodiscard]] bool isComplete() const { return complete_; }

    /// Returns a required member of any kind. If it is missing or a JSON null, returns nullptr and the record is
    /// incomplete.
    [[nodiscard]] const JsonValue* required(std::string_view key);
    /// Returns an optional member, or nullptr if it is missing or a JSON null.
    [[nodiscard]] const JsonValue* optional(std::string_view key) const;

    [[nodiscard]] Text text(std::string_view key);
    [[nodiscard]] std::optional<Text> optionalText(std::string_view key);
    [[nodiscard]] bool boolean(std::string_view key);

    /// Returns a required integer. If it is out of the range of `Integer`, returns 0 and the record is incomplete.
    template <typename Integer>
    [[nodiscard]] Integer integer(std::string_view key) {
        const std::int64_t value = wideInteger(key);
        if (value < std::int64_t{std::numeric_limits<Integer>::min()} ||
            value > std::int64_t{std::numeric_limits<Integer>::max()}) {
            complete_ = false;
            return 0;
        }
        return static_cast<Integer>(value);
    }

    /// Marks the record as incomplete, for a mismatch that the caller found.
    void fail() { complete_ = false; }

private:
    struct Field {
        std::string_view key;
        std::optional<JsonValue> value;
    };

    void take(const JsonMember& member);
    [[nodiscard]] std::int64_t wideInteger(std::string_view key);

    std::vector<Field> fields_;
    bool complete_ = false;
};

}  // namespace lomaris
