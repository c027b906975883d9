#pragma once

#include "platform/scheduling.h"
#include "simulator/json_file.h"
#include "text/text.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::simulator {

/// "one, two, three".
[[nodiscard]] std::string listOf(std::span<const std::string_view> names);

/// One value of a file together with the way to it. Each question that the value does not fit throws `FileError` with
/// the place and what was expected. Borrows the value.
class JsonNode {
public:
    explicit JsonNode(const Json& value, std::string place = "") : value_(&value), place_(std::move(place)) {}

    [[nodiscard]] const Json& value() const { return *value_; }
    [[nodiscard]] const std::string& place() const { return place_; }

    /// The value is not what was expected: "a boolean", "a name of an element".
    [[noreturn]] void refuse(std::string_view expected) const;

    // Objects.

    /// The value is an object with these keys and no others, all of which may be missing.
    void allowKeys(std::initializer_list<std::string_view> keys) const;
    void allowKeys(std::span<const std::string_view> keys) const;
    /// The value is an object with exactly one key, and one of these; the result is that key. `otherForms` is what the
    /// complaint names beside such an object: "a string or ".
    [[nodiscard]] std::string_view onlyKey(std::span<const std::string_view> keys,
                                           std::string_view otherForms = "") const;
    /// Nothing where the object does not have the key.
    [[nodiscard]] std::optional<JsonNode> find(std::string_view key) const;
    /// The value of a key that must be there.
    [[nodiscard]] JsonNode get(std::string_view key) const;
    /// Every key with its value, in the order of the file.
    [[nodiscard]] std::vector<std::pair<std::string, JsonNode>> entries() const;

    // Arrays.

    [[nodiscard]] std::vector<JsonNode> members() const;

    // Plain values.

    [[nodiscard]] bool isNull() const { return value_->is_null(); }
    [[nodiscard]] bool boolean() const;
    [[nodiscard]] std::int64_t integer(std::int64_t lowest, std::int64_t highest) const;
    /// UTF-8.
    [[nodiscard]] std::string string() const;
    /// One of these strings.
    [[nodiscard]] std::string choice(std::initializer_list<std::string_view> strings) const;
    /// A number of seconds, 0 to one million, fractions down to the nanosecond.
    [[nodiscard]] Duration seconds() const;
    /// A string, or an array of UTF-16 units by which half a surrogate pair can be written.
    [[nodiscard]] Text text() const;
    /// The same, or nothing for null.
    [[nodiscard]] std::optional<Text> textOrNull() const;

private:
    [[nodiscard]] JsonNode member(std::string_view key) const;

    const Json* value_;
    std::string place_;
};

}  // namespace lomaris::simulator
