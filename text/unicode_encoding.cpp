#include "text/unicode_encoding.h"

#include "text/code_points.h"
#include "text/utf8.h"

#include <utf8proc.h>

#include <array>

namespace lomaris {

namespace {

enum class ByteOrder : std::uint8_t { bigEndian, littleEndian };

/// Returns the code unit of `size` bytes that begins at `position`.
char32_t unitAt(std::string_view bytes, std::size_t position, std::size_t size, ByteOrder order) {
    char32_t unit = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t index = order == ByteOrder::bigEndian ? i : size - 1 - i;
        unit = (unit << 8U) | static_cast<unsigned char>(bytes[position + index]);
    }
    return unit;
}

bool hasHalfPair(TextView text) {
    for (std::size_t position = 0; position < text.size();) {
        const CodePoint codePoint = codePointAt(text, position);
        if (isSurrogate(text[position]) && codePoint.units == 1) {
            return true;
        }
        position += codePoint.units;
    }
    return false;
}

std::optional<std::string> utf8FromUtf16(std::string_view bytes, ByteOrder order) {
    constexpr std::size_t unitSize = 2;
    if (bytes.size() % unitSize != 0) {
        return std::nullopt;
    }
    Text text;
    text.reserve(bytes.size() / unitSize);
    for (std::size_t position = 0; position < bytes.size(); position += unitSize) {
        text.push_back(static_cast<char16_t>(unitAt(bytes, position, unitSize, order)));
    }
    return hasHalfPair(text) ? std::nullopt : std::optional(utf8FromText(text));
}

std::optional<std::string> utf8FromUtf32(std::string_view bytes, ByteOrder order) {
    constexpr std::size_t unitSize = 4;
    if (bytes.size() % unitSize != 0) {
        return std::nullopt;
    }
    std::string utf8;
    utf8.reserve(bytes.size() / unitSize);
    for (std::size_t position = 0; position < bytes.size(); position += unitSize) {
        const auto codePoint = static_cast<utf8proc_int32_t>(unitAt(bytes, position, unitSize, order));
        if (utf8proc_codepoint_valid(codePoint) == 0) {
            return std::nullopt;
        }
        std::array<utf8proc_uint8_t, 4> encoded{};
        const auto length = utf8proc_encode_char(codePoint, encoded.data());
        utf8.append(encoded.begin(), encoded.begin() + length);
    }
    return utf8;
}

}  // namespace

DetectedEncoding detectUnicodeEncoding(std::string_view bytes) {
    using namespace std::string_view_literals;
    struct Mark {
        std::string_view bytes;
        UnicodeEncoding encoding;
    };
    static constexpr std::array marks{
        Mark{"\xEF\xBB\xBF"sv, UnicodeEncoding::utf8},
        Mark{"\0\0\xFE\xFF"sv, UnicodeEncoding::utf32BigEndian},
        Mark{"\xFE\xFF"sv, UnicodeEncoding::utf16BigEndian},
        Mark{"\xFF\xFE"sv, UnicodeEncoding::utf16LittleEndian},
    };
    for (const Mark& mark : marks) {
        if (bytes.substr(0, mark.bytes.size()) == mark.bytes) {
            return {mark.encoding, mark.bytes.size()};
        }
    }
    if (bytes.size() < 4) {
        return {};
    }
    const std::array isZero{bytes[0] == '\0', bytes[1] == '\0', bytes[2] == '\0', bytes[3] == '\0'};
    if (isZero == std::array{true, true, true, false}) {
        return {UnicodeEncoding::utf32BigEndian};
    }
    if (isZero == std::array{false, true, true, true}) {
        return {UnicodeEncoding::utf32LittleEndian};
    }
    if (isZero == std::array{true, false, true, false}) {
        return {UnicodeEncoding::utf16BigEndian};
    }
    if (isZero == std::array{false, true, false, true}) {
        return {UnicodeEncoding::utf16LittleEndian};
    }
    return {};
}

std::optional<std::string> utf8FromEncoded(std::string_view bytes, UnicodeEncoding encoding) {
    switch (encoding) {
        case UnicodeEncoding::utf16BigEndian:
            return utf8FromUtf16(bytes, ByteOrder::bigEndian);
        case UnicodeEncoding::utf16LittleEndian:
            return utf8FromUtf16(bytes, ByteOrder::littleEndian);
        case UnicodeEncoding::utf32BigEndian:
            return utf8FromUtf32(bytes, ByteOrder::bigEndian);
        case UnicodeEncoding::utf32LittleEndian:
            return utf8FromUtf32(bytes, ByteOrder::littleEndian);
        case UnicodeEncoding::utf8:
            break;
    }
    return isValidUtf8(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
}

}  // namespace lomaris
