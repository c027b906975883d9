#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris {

/// The kind of a JSON value, determined by its first byte.
enum class JsonKind : std::uint8_t { null, boolean, number, string, array, object };

/// A value of a parsed document that has not been decoded. Strings and numbers are validated only when they are decoded
/// (`decodeJsonString`, `decodeJsonInteger`). The platform's own decoder does the same, so both accept the same
/// documents. Valid as long as the document.
struct JsonValue {
    JsonKind kind = JsonKind::null;
    /// The bytes of the value as written; for a string, without the quotation marks.
    std::string_view written;

    friend bool operator==(const JsonValue&, const JsonValue&) = default;
};

struct JsonMember {
    /// The string between the quotation marks, not decoded.
    std::string_view key;
    JsonValue value;

    friend bool operator==(const JsonMember&, const JsonMember&) = default;
};

/// A document with a well-formed structure. Owns its bytes only if they were converted from another encoding.
class JsonDocument {
public:
    [[nodiscard]] const JsonValue& root() const { return root_; }

private:
    friend std::optional<JsonDocument> parseJson(std::string_view bytes);

    /// The bytes that the values refer to, if the document was not in UTF-8.
    std::unique_ptr<const std::string> converted_;
    JsonValue root_;
};

/// Parses the structure of one JSON document in the encoding that `detectUnicodeEncoding` finds: UTF-8, UTF-16 or
/// UTF-32. UTF-8 is not copied: `bytes` must outlive the document.
///
/// Returns nullopt if the bytes are not exactly one document: unbalanced brackets, a missing or trailing comma, a
/// comment, a key that is not a string, an unknown word, anything after the document, or more than 512 nested
/// containers. Takes linear time up to the first error, and allocates memory only to convert another encoding.
[[nodiscard]] std::optional<JsonDocument> parseJson(std::string_view bytes);

/// Calls `take` with each member of an object, in document order and including repeated keys. Returns false if `value`
/// is not an object.
[[nodiscard]] bool visitMembers(const JsonValue& value, const std::function<void(const JsonMember&)>& take);

/// Returns the elements of an array, or nullopt if `value` is not an array.
[[nodiscard]] std::optional<std::vector<JsonValue>> elementsOf(const JsonValue& value);

}  // namespace lomaris
