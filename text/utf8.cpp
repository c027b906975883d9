#include "text/utf8.h"

#include "text/code_points.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace lomaris {

namespace {

using Byte = unsigned char;

/// One unit of decoding: a code point, or a maximal ill-formed sequence that is replaced by one U+FFFD.
struct Utf8Part {
    char32_t codePoint = replacementCharacter;
    std::size_t bytes = 1;
    bool isWellFormed = false;
};

Byte byteAt(std::string_view bytes, std::size_t position) { return static_cast<Byte>(bytes[position]); }

bool isContinuation(Byte byte) { return (byte & 0xC0U) == 0x80U; }

/// True if `second` may follow the lead byte `lead`. Some lead bytes allow only some continuation bytes, because the
/// others would form an overlong encoding, a surrogate or a code point above U+10FFFF.
bool maySecond(Byte lead, Byte second) {
    switch (lead) {
        case 0xE0:
            return second >= 0xA0 && second <= 0xBF;
        case 0xED:
            return second >= 0x80 && second <= 0x9F;
        case 0xF0:
            return second >= 0x90 && second <= 0xBF;
        case 0xF4:
            return second >= 0x80 && second <= 0x8F;
        default:
            return isContinuation(second);
    }
}

/// Decodes the part that begins at `position`. The byte there must be 0x80 or above.
Utf8Part partAt(std::string_view bytes, std::size_t position) {
    const std::size_t available = bytes.size() - position;
    const Byte lead = byteAt(bytes, position);
    if (lead < 0xC2 || lead > 0xF4 || available < 2) {
        return {};
    }
    const Byte second = byteAt(bytes, position + 1);
    if (!maySecond(lead, second)) {
        return {};
    }
    if (lead < 0xE0) {
        return {((lead & 0x1FU) << 6U) | (second & 0x3FU), 2, true};
    }
    if (available < 3 || !isContinuation(byteAt(bytes, position + 2))) {
        return {replacementCharacter, 2, false};
    }
    const Byte third = byteAt(bytes, position + 2);
    if (lead < 0xF0) {
        return {((lead & 0xFU) << 12U) | ((second & 0x3FU) << 6U) | (third & 0x3FU), 3, true};
    }
    if (available < 4 || !isContinuation(byteAt(bytes, position + 3))) {
        return {replacementCharacter, 3, false};
    }
    const Byte fourth = byteAt(bytes, position + 3);
    return {((lead & 7U) << 18U) | ((second & 0x3FU) << 12U) | ((third & 0x3FU) << 6U) | (fourth & 0x3FU), 4, true};
}

constexpr std::size_t blockSize = 16;

/// True if the `blockSize` bytes or UTF-16 units starting at `block` are all ASCII.
template <typename Unit>
bool isAsciiBlock(const Unit* block) {
    constexpr std::uint64_t notAscii = sizeof(Unit) == 1 ? 0x8080808080808080U : 0xFF80FF80FF80FF80U;
    std::array<std::uint64_t, blockSize * sizeof(Unit) / sizeof(std::uint64_t)> words{};
    std::memcpy(words.data(), block, sizeof(words));
    std::uint64_t allBits = 0;
    for (const std::uint64_t word : words) {
        allBits |= word;
    }
    return (allBits & notAscii) == 0;
}

/// Copies the leading ASCII units of `[first, last)` to `output`, narrowing or widening them. Returns their number.
template <typename From, typename To>
std::size_t copyAscii(const From* first, const From* last, To* output) {
    const auto available = static_cast<std::size_t>(last - first);
    std::size_t copied = 0;
    while (available - copied >= blockSize && isAsciiBlock(first + copied)) {
        for (std::size_t i = 0; i < blockSize; ++i) {
            output[copied + i] = static_cast<To>(first[copied + i]);
        }
        copied += blockSize;
    }
    while (copied < available && static_cast<std::make_unsigned_t<From>>(first[copied]) < 0x80) {
        output[copied] = static_cast<To>(first[copied]);
        ++copied;
    }
    return copied;
}

char16_t* writeUtf16(char16_t* output, char32_t codePoint) {
    if (codePoint < 0x10000) {
        *output++ = static_cast<char16_t>(codePoint);
        return output;
    }
    const char32_t offset = codePoint - 0x10000;
    *output++ = static_cast<char16_t>(0xD800 + (offset >> 10U));
    *output++ = static_cast<char16_t>(0xDC00 + (offset & 0x3FFU));
    return output;
}

/// Writes the UTF-8 of a code point that is 0x80 or above. Returns the end of the output.
char* writeUtf8(char* output, char32_t codePoint) {
    const auto trail = [codePoint](unsigned shift) {
        return static_cast<char>(0x80U | ((codePoint >> shift) & 0x3FU));
    };
    if (codePoint < 0x800) {
        *output++ = static_cast<char>(0xC0U | (codePoint >> 6U));
    } else if (codePoint < 0x10000) {
        *output++ = static_cast<char>(0xE0U | (codePoint >> 12U));
        *output++ = trail(6);
    } else {
        *output++ = static_cast<char>(0xF0U | (codePoint >> 18U));
        *output++ = trail(12);
        *output++ = trail(6);
    }
    *output++ = trail(0);
    return output;
}

enum class IllFormed { replace, refuse };

/// Decodes `bytes` into `text`. Returns false if it stopped at an ill-formed part, which only `refuse` does.
bool decode(std::string_view bytes, Text& text, IllFormed illFormed) {
    // No part has more UTF-16 units than bytes.
    text.resize(bytes.size());
    const char* const end = bytes.data() + bytes.size();
    char16_t* output = text.data();
    std::size_t position = 0;
    while (position < bytes.size()) {
        if (byteAt(bytes, position) < 0x80) {
            const std::size_t copied = copyAscii(bytes.data() + position, end, output);
            position += copied;
            output += copied;
            continue;
        }
        const Utf8Part part = partAt(bytes, position);
        if (!part.isWellFormed && illFormed == IllFormed::refuse) {
            return false;
        }
        output = writeUtf16(output, part.codePoint);
        position += part.bytes;
    }
    text.resize(static_cast<std::size_t>(output - text.data()));
    return true;
}

/// UTF-16 units converted at a time: few enough that their UTF-8 stays in the L1 cache until it is copied.
constexpr std::size_t stretch = 4096;

/// The largest UTF-8 of a stretch: three bytes a unit, and one more if a surrogate pair extends past its end.
using StretchBytes = std::array<char, 3 * stretch + 1>;

/// Writes the UTF-8 of the code points that begin in the stretch at `position`, and advances `position` past them.
/// Returns the end of the output.
char* encodeStretch(TextView text, std::size_t& position, char* output) {
    const std::size_t stretchEnd = std::min(position + stretch, text.size());
    while (position < stretchEnd) {
        if (text[position] < 0x80) {
            const std::size_t copied = copyAscii(text.data() + position, text.data() + stretchEnd, output);
            position += copied;
            output += copied;
            continue;
        }
        const CodePoint codePoint = codePointAt(text, position);
        output = writeUtf8(output, codePoint.value);
        position += codePoint.units;
    }
    return output;
}

}  // namespace

bool isValidUtf8(std::string_view bytes) {
    std::size_t position = 0;
    while (position < bytes.size()) {
        if (bytes.size() - position >= blockSize && isAsciiBlock(bytes.data() + position)) {
            position += blockSize;
            continue;
        }
        if (byteAt(bytes, position) < 0x80) {
            ++position;
            continue;
        }
        const Utf8Part part = partAt(bytes, position);
        if (!part.isWellFormed) {
            return false;
        }
        position += part.bytes;
    }
    return true;
}

Text textFromUtf8(std::string_view bytes) {
    Text text;
    decode(bytes, text, IllFormed::replace);
    return text;
}

std::optional<Text> textFromValidUtf8(std::string_view bytes) {
    Text text;
    if (!decode(bytes, text, IllFormed::refuse)) {
        return std::nullopt;
    }
    return text;
}

std::string utf8FromText(TextView text) {
    std::string bytes;
    bytes.reserve(text.size());
    appendUtf8(bytes, text);
    return bytes;
}

void appendUtf8(std::string& output, TextView text) {
    StretchBytes bytes;  // NOLINT(cppcoreguidelines-pro-type-member-init): only the part that was written is read.
    std::size_t position = 0;
    while (position < text.size()) {
        const char* const end = encodeStretch(text, position, bytes.data());
        output.append(bytes.data(), static_cast<std::size_t>(end - bytes.data()));
    }
}

}  // namespace lomaris
