#pragma once

#include "accessibility/model/json_value.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace lomaris {

/// Walks over JSON text in UTF-8 and finds where its values begin and end. Strings are looked at only for their end,
/// numbers only for the characters that numbers are made of. Nesting costs no stack.
///
/// Each operation begins where the one before it ended. One that answers "no" ends the walk: the text is not JSON. The
/// text is borrowed and must outlive the scanner and everything it answers.
class JsonScanner {
public:
    explicit JsonScanner(std::string_view text) : text_(text) {}

    void skipWhitespace();

    [[nodiscard]] bool isAtEnd() const { return position_ == text_.size(); }

    /// Takes `byte` where it comes next.
    [[nodiscard]] bool take(char byte);

    /// The value that begins here, all that it contains included.
    [[nodiscard]] std::optional<JsonValue> value();

    /// The key that begins here, with the colon behind it and the white space around both.
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
    /// Goes to the next value of the innermost container, over its key where it has one.
    [[nodiscard]] bool reachElement(const OpenContainers& open);
    /// Closes the containers that end here.
    void closeAll(OpenContainers& open);

    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace lomaris
