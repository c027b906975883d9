#include "json/json_scanner.h"

#include "json/block_search.h"

#include <bitset>

namespace lomaris {

namespace {

constexpr std::size_t maximumDepth = 512;

bool isWhitespace(char byte) { return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t'; }

bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

bool isInNumbers(char byte) {
    return isDigit(byte) || byte == '.' || byte == '-' || byte == '+' || byte == 'e' || byte == 'E';
}

}  // namespace

/// The stack of open containers, outermost first. Stores only whether each is an object.
class JsonScanner::OpenContainers {
public:
    [[nodiscard]] bool isEmpty() const { return depth_ == 0; }
    [[nodiscard]] bool isFull() const { return depth_ == maximumDepth; }
    [[nodiscard]] bool isInObject() const { return isObject_[depth_ - 1]; }
    [[nodiscard]] char closingBracket() const { return isInObject() ? '}' : ']'; }

    void open(char bracket) { isObject_[depth_++] = bracket == '{'; }
    void close() { --depth_; }

private:
    std::bitset<maximumDepth> isObject_;
    std::size_t depth_ = 0;
};

void JsonScanner::skipWhitespace() {
    const auto isOther = [](char byte) { return !isWhitespace(byte); };
    // Most white space is one byte. A block search is only faster on the indentation that may follow.
    if (!isAtEnd() && isWhitespace(text_[position_])) {
        position_ = findFirst(text_, position_ + 1, isOther);
    }
}

bool JsonScanner::take(char byte) {
    if (!isNext(byte)) {
        return false;
    }
    ++position_;
    return true;
}

std::optional<JsonValue> JsonScanner::value() {
    if (!beginsContainer()) {
        return scalar();
    }
    const std::size_t start = position_;
    const JsonKind kind = isNext('{') ? JsonKind::object : JsonKind::array;
    return skipContainer() ? std::optional(JsonValue{kind, writtenFrom(start)}) : std::nullopt;
}

std::optional<std::string_view> JsonScanner::key() {
    skipWhitespace();
    const auto key = string();
    skipWhitespace();
    if (!key || !take(':')) {
        return std::nullopt;
    }
    skipWhitespace();
    return key;
}

std::optional<std::string_view> JsonScanner::string() {
    if (!take('"')) {
        return std::nullopt;
    }
    const std::size_t start = position_;
    const auto endsOrEscapes = [](char byte) { return byte == '"' || byte == '\\'; };
    std::size_t end = findFirst(text_, start, endsOrEscapes);
    while (end < text_.size() && text_[end] == '\\') {
        // Skips the escaped byte, which may be a quotation mark that does not end the string.
        end = end + 2 <= text_.size() ? findFirst(text_, end + 2, endsOrEscapes) : text_.size();
    }
    if (end == text_.size()) {
        return std::nullopt;
    }
    position_ = end + 1;
    return text_.substr(start, end - start);
}

std::optional<JsonValue> JsonScanner::scalar() {
    const char first = isAtEnd() ? '\0' : text_[position_];
    switch (first) {
        case '"': {
            const auto written = string();
            return written ? std::optional(JsonValue{JsonKind::string, *written}) : std::nullopt;
        }
        case 'n':
            return word(JsonKind::null, "null");
        case 't':
            return word(JsonKind::boolean, "true");
        case 'f':
            return word(JsonKind::boolean, "false");
        default:
            return first == '-' || isDigit(first) ? std::optional(number()) : std::nullopt;
    }
}

std::optional<JsonValue> JsonScanner::word(JsonKind kind, std::string_view letters) {
    if (text_.substr(position_, letters.size()) != letters) {
        return std::nullopt;
    }
    position_ += letters.size();
    return JsonValue{kind, letters};
}

JsonValue JsonScanner::number() {
    const std::size_t start = position_;
    while (!isAtEnd() && isInNumbers(text_[position_])) {
        ++position_;
    }
    return {JsonKind::number, writtenFrom(start)};
}

bool JsonScanner::skipContainer() {
    OpenContainers open;
    while (true) {
        if (beginsContainer()) {
            if (open.isFull()) {
                return false;
            }
            open.open(text_[position_++]);
            skipWhitespace();
            if (!isNext(open.closingBracket())) {
                if (!reachElement(open)) {
                    return false;
                }
                continue;
            }
        } else if (!scalar()) {
            return false;
        }
        closeAll(open);
        if (open.isEmpty()) {
            return true;
        }
        if (!take(',') || !reachElement(open)) {
            return false;
        }
    }
}

bool JsonScanner::reachElement(const OpenContainers& open) {
    skipWhitespace();
    return !open.isInObject() || key().has_value();
}

void JsonScanner::closeAll(OpenContainers& open) {
    while (!open.isEmpty()) {
        skipWhitespace();
        if (!take(open.closingBracket())) {
            return;
        }
        open.close();
    }
}

}  // namespace lomaris
