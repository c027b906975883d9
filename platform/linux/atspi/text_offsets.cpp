#include "platform/linux/atspi/text_offsets.h"

#include "text/code_points.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace lomaris {

namespace {

constexpr char16_t byteOrderMark = u'\uFEFF';
constexpr std::string_view byteOrderMarkBytes = "\xEF\xBB\xBF";

/// True for the first byte of a four-byte sequence. In well-formed UTF-8, exactly the characters outside the Basic
/// Multilingual Plane have four bytes.
bool beginsAstral(char byte) { return (static_cast<unsigned char>(byte) & 0xF8U) == 0xF0U; }

std::int64_t codePointCount(TextView text) {
    const auto pairs = std::count_if(text.begin(), text.end(), isHighSurrogate);
    return static_cast<std::int64_t>(text.size()) - pairs;
}

/// Removes the U+FEFF after each surrogate pair.
Text withoutPadding(TextView text) {
    Text result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        result.push_back(text[i]);
        if (isLowSurrogate(text[i]) && i + 1 < text.size() && text[i + 1] == byteOrderMark) {
            ++i;
        }
    }
    return result;
}

/// The position, in UTF-16 units, of the code point with the index `codePoint` in a well-formed text.
std::int64_t unitPosition(TextView text, std::int64_t codePoint) {
    std::size_t position = 0;
    for (; codePoint > 0; --codePoint) {
        position += codePointAt(text, position).units;
    }
    return static_cast<std::int64_t>(position);
}

}  // namespace

bool looksPadded(std::string_view bytes) {
    constexpr std::size_t astralLength = 4;
    bool hasAstral = false;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (!beginsAstral(bytes[i])) {
            continue;
        }
        if (i + astralLength > bytes.size() || !bytes.substr(i + astralLength).starts_with(byteOrderMarkBytes)) {
            return false;
        }
        hasAstral = true;
    }
    return hasAstral;
}

std::optional<ElementText> ElementText::read(std::string_view bytes, std::int64_t characterCount,
                                             AstralPadding padding) {
    auto text = textFromValidUtf8(bytes);
    if (!text) {
        return std::nullopt;
    }
    if (padding == AstralPadding::byteOrderMarks) {
        *text = withoutPadding(*text);
    }
    const auto units = static_cast<std::int64_t>(text->size());
    Unit unit = Unit::unknown;
    if (characterCount == units) {
        unit = Unit::utf16;
    } else if (characterCount == codePointCount(*text) && padding == AstralPadding::none) {
        unit = Unit::codePoint;
    }
    return ElementText(std::move(*text), unit);
}

std::optional<TextRange> ElementText::range(std::int64_t start, std::int64_t end) const {
    if (start > end) {
        std::swap(start, end);
    }
    const bool countsCodePoints = unit_ == Unit::codePoint;
    const std::int64_t length = countsCodePoints ? codePointCount(text_) : static_cast<std::int64_t>(text_.size());
    if (unit_ == Unit::unknown || start < 0 || end > length) {
        return std::nullopt;
    }
    if (countsCodePoints) {
        start = unitPosition(text_, start);
        end = unitPosition(text_, end);
    }
    return TextRange{start, end - start};
}

std::int64_t ElementText::ownPosition(std::int64_t position) const {
    const TextView before = TextView(text_).substr(0, static_cast<std::size_t>(position));
    return unit_ == Unit::codePoint ? codePointCount(before) : position;
}

Text ElementText::part(TextRange range) const {
    return text_.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
}

}  // namespace lomaris
