#pragma once

#include "platform/attribute_value.h"
#include "text/text.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace lomaris {

/// How a toolkit sends characters outside the Basic Multilingual Plane. Gecko inserts U+FEFF after each, so that the
/// number of characters on the bus equals the number of UTF-16 units that it uses internally.
enum class AstralPadding { none, byteOrderMarks };

/// True if `bytes` (UTF-8) may be padded: it has at least one character outside the Basic Multilingual Plane, and each
/// is followed by U+FEFF. A user may write such a text too; only the name of the toolkit distinguishes the two.
[[nodiscard]] bool looksPadded(std::string_view bytes);

/// The text of an element and the unit in which the element counts positions.
///
/// No toolkit says whether its positions count code points or UTF-16 units. The unit is determined by the number of
/// characters that it reports for the whole text (`CharacterCount`), which equals the length in one unit or in both.
class ElementText {
public:
    /// `bytes` is the whole text as the element returned it, `characterCount` the length that the element reports; if
    /// that equals neither length, the unit is unknown. nullopt if `bytes` is not well-formed UTF-8.
    [[nodiscard]] static std::optional<ElementText> read(std::string_view bytes, std::int64_t characterCount,
                                                         AstralPadding padding);

    /// The text without padding.
    [[nodiscard]] const Text& text() const { return text_; }

    /// Converts two positions in the element's unit, in either order, to the range between them in UTF-16 units.
    /// nullopt if a position is outside the text or the unit is unknown.
    [[nodiscard]] std::optional<TextRange> range(std::int64_t start, std::int64_t end) const;

    /// Converts a position in UTF-16 units to the element's unit. The inverse of `range`.
    [[nodiscard]] std::int64_t ownPosition(std::int64_t position) const;

    /// The part of the text in a range returned by `range`.
    [[nodiscard]] Text part(TextRange range) const;

private:
    enum class Unit { unknown, codePoint, utf16 };

    ElementText(Text text, Unit unit) : text_(std::move(text)), unit_(unit) {}

    Text text_;
    Unit unit_;
};

}  // namespace lomaris
