#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris {

/// What a JSON value is, told by how it begins.
enum class JsonKind : std::uint8_t { null, boolean, number, string, array, object };

/// A value of a parsed document, not decoded yet: where it stands. Whether a string or a number is well-formed shows
/// only when it is decoded (`decodeJsonString`, `decodeJsonInteger`), as with the platform's own decoder, which looks
/// into nothing that no record asks for. Valid as long as the document.
struct JsonValue {
    JsonKind kind = JsonKind::null;
    /// The bytes of the value as they are written, of a string without the quotation marks.
    std::string_view written;

    friend bool operator==(const JsonValue&, const JsonValue&) = default;
};

struct JsonMember {
    /// A string between its quotation marks, not decoded.
    std::string_view key;
    JsonValue value;

    friend bool operator==(const JsonMember&, const JsonMember&) = default;
};

/// A document whose structure is known to be well-formed.
class JsonDocument {
public:
    [[nodiscard]] const JsonValue& root() const { return root_; }

private:
    friend std::optional<JsonDocument> parseJson(std::string_view bytes);

    /// What the values stand in where the document came in another encoding.
    std::unique_ptr<const std::string> converted_;
    JsonValue root_;
};

/// Finds the structure of one JSON document in UTF-8, or in UTF-16 or UTF-32 that begins with a byte-order mark or is
/// told by its zero bytes. UTF-8 is not copied: `bytes` must outlive the document.
///
/// Nothing where the bytes are not exactly one document: unbalanced brackets, a missing or trailing comma, a comment,
/// a key that is no string, a word that means nothing, anything after the document, containers nested deeper than 512
/// levels. Takes time in proportion to what was read until then and no memory.
[[nodiscard]] std::optional<JsonDocument> parseJson(std::string_view bytes);

/// Calls `take` with each member of an object in the order of the document, equal keys included. Answers whether
/// `value` is an object.
[[nodiscard]] bool visitMembers(const JsonValue& value, const std::function<void(const JsonMember&)>& take);

/// The elements of an array. Nothing where `value` is no array.
[[nodiscard]] std::optional<std::vector<JsonValue>> elementsOf(const JsonValue& value);

}  // namespace lomaris
