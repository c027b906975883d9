#pragma once

#include "accessibility/model/json_value.h"
#include "text/text.h"

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

namespace lomaris {

/// Reads the fields of one record out of a JSON object. What does not fit is remembered: a reader asks for all fields
/// and then once whether the record `isComplete`. Of equal keys the first counts; unknown keys are ignored, but must be
/// well-formed strings as well. The values of unknown keys are not decoded.
class JsonFields {
public:
    /// `keys` are those of the record, literals; no other can be asked for. The document of `value` must outlive the
    /// reader. A value that is no object is a record that cannot be complete.
    JsonFields(const JsonValue& value, std::initializer_list<std::string_view> keys);
    JsonFields(const JsonDocument& document, std::initializer_list<std::string_view> keys)
        : JsonFields(document.root(), keys) {}

    [[nodiscard]] bool isComplete() const { return complete_; }

    /// A required member of any kind, or null where it is missing.
    [[nodiscard]] const JsonValue* required(std::string_view key);
    /// An optional member, or null where it is missing or a JSON null.
    [[nodiscard]] const JsonValue* optional(std::string_view key) const;

    [[nodiscard]] Text text(std::string_view key);
    [[nodiscard]] std::optional<Text> optionalText(std::string_view key);
    [[nodiscard]] bool boolean(std::string_view key);

    /// A required integer of the given type; a number outside of its range does not fit.
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

    /// Says that something read elsewhere did not fit.
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
