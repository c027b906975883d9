#include "json/json_string.h"

#include "json/block_search.h"
#include "text/code_points.h"
#include "text/utf8.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>

namespace lomaris {

namespace {

constexpr std::size_t hexadecimalLength = 4;

bool isEscapeOrControl(char byte) { return byte == '\\' || static_cast<unsigned char>(byte) < 0x20; }

/// Decodes the four hexadecimal digits at the start of `bytes`. Returns nullopt if there are fewer.
std::optional<char16_t> hexadecimalUnit(std::string_view bytes) {
    const std::string_view digits = bytes.substr(0, hexadecimalLength);
    std::uint16_t unit = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
    if (digits.size() != hexadecimalLength || error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return static_cast<char16_t>(unit);
}

/// Appends the character of a "\u" escape to `output`. `rest` begins after the "\u". Returns the number of bytes used
/// of `rest`, or 0 if the escape is ill-formed.
std::size_t appendUnicodeEscape(std::string_view rest, std::string& output) {
    const auto unit = hexadecimalUnit(rest);
    if (!unit || isLowSurrogate(*unit)) {
        return 0;
    }
    if (!isHighSurrogate(*unit)) {
        appendUtf8(output, TextView(&*unit, 1));
        return hexadecimalLength;
    }
    rest.remove_prefix(hexadecimalLength);
    const auto low = rest.substr(0, 2) == "\\u" ? hexadecimalUnit(rest.substr(2)) : std::nullopt;
    if (!low || !isLowSurrogate(*low)) {
        return 0;
    }
    appendUtf8(output, Text{*unit, *low});
    return hexadecimalLength + 2 + hexadecimalLength;
}

/// Returns the character that a backslash and `letter` represent, or NUL if there is no such escape.
char shortEscape(char letter) {
    switch (letter) {
        case '"':
        case '\\':
        case '/':
            return letter;
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        default:
            return '\0';
    }
}

/// Appends the character of the escape at the start of `rest` to `output`. Returns the length of the escape in bytes,
/// or 0 if it is ill-formed.
std::size_t appendEscaped(std::string_view rest, std::string& output) {
    if (rest.size() < 2 || rest[0] != '\\') {
        return 0;
    }
    if (rest[1] == 'u') {
        const std::size_t used = appendUnicodeEscape(rest.substr(2), output);
        return used == 0 ? 0 : used + 2;
    }
    const char escaped = shortEscape(rest[1]);
    if (escaped == '\0') {
        return 0;
    }
    output.push_back(escaped);
    return 2;
}

}  // namespace

std::optional<Text> decodeJsonString(std::string_view written) {
    std::size_t end = findFirst(written, 0, isEscapeOrControl);
    if (end == written.size()) {
        return textFromValidUtf8(written);
    }
    std::string unescaped;
    unescaped.reserve(written.size());
    std::size_t start = 0;
    while (end < written.size()) {
        unescaped.append(written, start, end - start);
        const std::size_t used = appendEscaped(written.substr(end), unescaped);
        if (used == 0) {
            return std::nullopt;
        }
        start = end + used;
        end = findFirst(written, start, isEscapeOrControl);
    }
    unescaped.append(written, start);
    return textFromValidUtf8(unescaped);
}

}  // namespace lomaris
