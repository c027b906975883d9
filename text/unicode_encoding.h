#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

enum class UnicodeEncoding : std::uint8_t {
    utf8,
    utf16BigEndian,
    utf16LittleEndian,
    utf32BigEndian,
    utf32LittleEndian
};

/// How bytes are encoded, and how many of them are a byte-order mark in front of the text.
struct DetectedEncoding {
    UnicodeEncoding encoding = UnicodeEncoding::utf8;
    std::size_t markLength = 0;
};

/// Tells the encoding of a text that begins with two ASCII characters, as JSON documents do: by its byte-order mark, or
/// by where zero bytes stand among the first four. The mark of UTF-32 little-endian is not known as one, as it begins
/// like that of UTF-16. UTF-8 is what everything else is, ill-formed bytes included.
[[nodiscard]] DetectedEncoding detectUnicodeEncoding(std::string_view bytes);

/// A text in any encoding as UTF-8. Nothing where the bytes are ill-formed: half a unit at the end, half a surrogate
/// pair, a value above U+10FFFF.
[[nodiscard]] std::optional<std::string> utf8FromEncoded(std::string_view bytes, UnicodeEncoding encoding);

}  // namespace lomaris
