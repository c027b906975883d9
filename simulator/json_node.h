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

/// Joins the names: "one, two, three".
[[nodiscard]] std::string listOf(std::span<const std::string_view> names);

/// A value of a file, and its path in the file. An accessor throws `FileError` with the path and the expected form if
/// the value does not have that form. Borrows the value.
class JsonNode {
public:
    explicit JsonNode(const Json& value, std::string place = "") : value_(&value), place_(std::move(place)) {}

    [[nodiscard]] const Json& value() const { return *value_; }
    [[nodiscard]] const std::string& place() const { return place_; }

    /// Throws `FileError`. `expected` describes the expected value: "a boolean", "a name of an element".
    [[noreturn]] void refuse(std::string_view expected) const;

    // Objects.

    /// Requires an object with no other keys than these. Any of them may be missing.
    void allowKeys(std::initializer_list<std::string_view> keys) const;
    void allowKeys(std::span<const std::string_view> keys) const;
    /// Requires an object with exactly one key, which is one of these, and returns the key. `otherForms` precedes the
    /// object in the error message: "a string or ".
    [[nodiscard]] std::string_view onlyKey(std::span<const std::string_view> keys,
                                           std::string_view otherForms = "") const;
    /// Returns nullopt if the object does not have the key.
    [[nodiscard]] std::optional<JsonNode> find(std::string_view key) const;
    /// Returns the value of a required key.
    [[nodiscard]] JsonNode get(std::string_view key) const;
    /// Returns all keys with their values, in the order of the file.
    [[nodiscard]] std::vector<std::pair<std::string, JsonNode>> entries() const;

    // Arrays.

    [[nodiscard]] std::vector<JsonNode> members() const;

    // Plain values.

    [[nodiscard]] bool isNull() const { return value_->is_null(); }
    [[nodiscard]] bool boolean() const;
    [[nodiscard]] std::int64_t integer(std::int64_t lowest, std::int64_t highest) const;
    /// UTF-8.
    [[nodiscard]] std::string string() const;
    /// Returns a string that must be one of these.
    [[nodiscard]] std::string choice(std::initializer_list<std::string_view> strings) const;
    /// Returns a number of seconds, 0 to one million, rounded to nanoseconds.
    [[nodiscard]] Duration seconds() const;
    /// Returns a text, written as a string, or as an array of UTF-16 units to allow half a surrogate pair.
    [[nodiscard]] Text text() const;
    /// As `text`, or nullopt for null.
    [[nodiscard]] std::optional<Text> textOrNull() const;

private:
    [[nodiscard]] JsonNode member(std::string_view key) const;

    const Json* value_;
    std::string place_;
};

}  // namespace lomaris::simulator
