#pragma once

#include "json/json_value.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace lomaris {

/// Scans JSON text in UTF-8 and finds the start and end of its values. Does not validate the contents of strings and
/// numbers: a string ends at its closing quotation mark, and a number consists of any characters that occur in numbers.
/// Nested values are scanned without recursion.
///
/// Each operation starts at the end of the previous one. After a failure (nullopt) the text is not JSON and the
/// position is unspecified. The text is borrowed and must outlive the scanner and all values that it returns.
class JsonScanner {
public:
    explicit JsonScanner(std::string_view text) : text_(text) {}

    void skipWhitespace();

    [[nodiscard]] bool isAtEnd() const { return position_ == text_.size(); }

    /// Advances past `byte` if it is the next byte. Otherwise returns false and leaves the position unchanged.
    [[nodiscard]] bool take(char byte);

    /// Returns the value that begins at the position, including everything it contains.
    [[nodiscard]] std::optional<JsonValue> value();

    /// Returns the key at the position, and advances past it, the colon and the white space around both.
    [[nodiscard]] std::optional<std::string_view> key();

private:
    class OpenContainers;

    [[nodiscard]] bool isNext(char byte) const { return !isAtEnd() && text_[position_] == byte; }
    [[nodiscard]] bool beginsContainer() const { return isNext('{') || isNext('['); }
    [[nodiscard]] std::string_view writtenFrom(std::size_t start) const {
        return text_.substr(start, position_ - start);
    }

    [[nodiscard]] std::optional<std::string_view> string();
    [[nodiscard]] std::optional<JsonValue> scalar();
    [[nodiscard]] std::optional<JsonValue> word(JsonKind kind, std::string_view letters);
    [[nodiscard]] JsonValue number();

    [[nodiscard]] bool skipContainer();
    /// Advances to the next value of the innermost container, and past its key in an object.
    [[nodiscard]] bool reachElement(const OpenContainers& open);
    /// Closes all containers that end at the position.
    void closeAll(OpenContainers& open);

    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace lomaris
