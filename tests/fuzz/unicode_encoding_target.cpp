// Bytes are converted from the detected encoding and from each of the others.

#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/input_text.h"
#include "text/code_points.h"
#include "text/unicode_encoding.h"
#include "text/utf8.h"

#include <array>
#include <cstddef>
#include <string>

namespace lomaris::test {
namespace {

constexpr std::array encodings{UnicodeEncoding::utf8, UnicodeEncoding::utf16BigEndian,
                               UnicodeEncoding::utf16LittleEndian, UnicodeEncoding::utf32BigEndian,
                               UnicodeEncoding::utf32LittleEndian};

bool hasUnpairedSurrogate(const Text& text) {
    for (std::size_t position = 0; position < text.size();) {
        const CodePoint codePoint = codePointAt(text, position);
        if (codePoint.units == 1 && isSurrogate(text[position])) {
            return true;
        }
        position += codePoint.units;
    }
    return false;
}

}  // namespace

void tryInput(std::string_view bytes) {
    const DetectedEncoding detected = detectUnicodeEncoding(bytes);
    require(detected.markLength <= bytes.size(), "a byte-order mark is part of the bytes");
    static_cast<void>(utf8FromEncoded(bytes.substr(detected.markLength), detected.encoding));
    for (const UnicodeEncoding encoding : encodings) {
        const auto converted = utf8FromEncoded(bytes, encoding);
        require(!converted || isValidUtf8(*converted), "the result is well-formed UTF-8");
    }
    const auto littleEndian = utf8FromEncoded(bytes, UnicodeEncoding::utf16LittleEndian);
    const Text text = unitsFromBytes(bytes);
    require(littleEndian.has_value() == (bytes.size() % 2 == 0 && !hasUnpairedSurrogate(text)),
            "UTF-16 is refused only for an odd byte or half a surrogate pair");
    require(!littleEndian || textFromUtf8(*littleEndian) == text, "UTF-16 survives a round trip");
}

}  // namespace lomaris::test
