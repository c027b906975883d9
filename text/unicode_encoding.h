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

/// The encoding of a byte string, and the length in bytes of the byte-order mark at its start (0 if it has none).
struct DetectedEncoding {
    UnicodeEncoding encoding = UnicodeEncoding::utf8;
    std::size_t markLength = 0;
};

/// Detects the encoding of a text that begins with two ASCII characters, as JSON documents do: by its byte-order mark,
/// or by the positions of the zero bytes among the first four. The UTF-32 little-endian mark is read as the UTF-16
/// little-endian mark, because it begins with the same two bytes. Everything else counts as UTF-8, ill-formed bytes
/// included.
[[nodiscard]] DetectedEncoding detectUnicodeEncoding(std::string_view bytes);

/// Converts `bytes` from `encoding` to UTF-8; they must not include a byte-order mark, which would be kept as text.
/// Returns nullopt if they are ill-formed: a trailing incomplete unit, half a surrogate pair, a value above U+10FFFF.
[[nodiscard]] std::optional<std::string> utf8FromEncoded(std::string_view bytes, UnicodeEncoding encoding);

}  // namespace lomaris
