#include "json/json_value.h"

#include "json/json_scanner.h"
#include "text/unicode_encoding.h"

#include <utility>

namespace lomaris {

std::optional<JsonDocument> parseJson(std::string_view bytes) {
    const auto [encoding, markLength] = detectUnicodeEncoding(bytes);
    bytes.remove_prefix(markLength);
    JsonDocument document;
    if (encoding != UnicodeEncoding::utf8) {
        auto converted = utf8FromEncoded(bytes, encoding);
        if (!converted) {
            return std::nullopt;
        }
        document.converted_ = std::make_unique<const std::string>(std::move(*converted));
        bytes = *document.converted_;
    }
    JsonScanner scanner(bytes);
    scanner.skipWhitespace();
    const auto root = scanner.value();
    scanner.skipWhitespace();
    if (!root || !scanner.isAtEnd()) {
        return std::nullopt;
    }
    document.root_ = *root;
    return document;
}

// `parseJson` has checked the structure, so below a key or value is missing only if the container is empty.

bool visitMembers(const JsonValue& value, const std::function<void(const JsonMember&)>& take) {
    if (value.kind != JsonKind::object) {
        return false;
    }
    JsonScanner scanner(value.written);
    for (char before = '{'; scanner.take(before); before = ',') {
        const auto key = scanner.key();
        const auto member = key ? scanner.value() : std::nullopt;
        if (member) {
            take({*key, *member});
        }
        scanner.skipWhitespace();
    }
    return true;
}

std::optional<std::vector<JsonValue>> elementsOf(const JsonValue& value) {
    if (value.kind != JsonKind::array) {
        return std::nullopt;
    }
    std::vector<JsonValue> elements;
    JsonScanner scanner(value.written);
    for (char before = '['; scanner.take(before); before = ',') {
        scanner.skipWhitespace();
        if (const auto element = scanner.value()) {
            elements.push_back(*element);
        }
        scanner.skipWhitespace();
    }
    return elements;
}

}  // namespace lomaris
