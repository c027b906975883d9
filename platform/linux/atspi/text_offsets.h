#pragma once

#include "platform/attribute_value.h"
#include "text/text.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace lomaris {

/// How a toolkit writes characters outside of the basic plane. One of them puts U+FEFF after each, so that what its bus
/// layer counts as characters agrees with the UTF-16 units that it has inside.
enum class AstralPadding { none, byteOrderMarks };

/// Whether `bytes` (UTF-8) might be padded: there is at least one character outside of the basic plane, and U+FEFF
/// stands after each. Only the toolkit's name then tells padding from a text that was written like that.
[[nodiscard]] bool looksPadded(std::string_view bytes);

/// The text of an element as it answered it, beside the unit in which it counts.
///
/// No toolkit says whether its positions count code points or UTF-16 units. The number of characters that it claims for
/// the whole text tells: it agrees with one of the two lengths, or with both where they are the same.
class ElementText {
public:
    /// `bytes` is the whole text as the element gave it, or nothing is answered where it is not well-formed UTF-8;
    /// `characterCount` is the length that the element claims.
    [[nodiscard]] static std::optional<ElementText> read(std::string_view bytes, std::int64_t characterCount,
                                                         AstralPadding padding);

    [[nodiscard]] const Text& text() const { return text_; }

    /// The range between two positions in the element's own unit, in UTF-16 units, whichever of them comes first.
    /// Nothing where a position lies outside of the text or the unit cannot be told.
    [[nodiscard]] std::optional<TextRange> range(std::int64_t start, std::int64_t end) const;

    /// A position of the text in the element's own unit. Positions that `range` answers come out as they went in.
    [[nodiscard]] std::int64_t ownPosition(std::int64_t position) const;

    /// The part of the text that a range of `range` covers.
    [[nodiscard]] Text part(TextRange range) const;

private:
    enum class Unit { unknown, codePoint, utf16 };

    ElementText(Text text, Unit unit) : text_(std::move(text)), unit_(unit) {}

    Text text_;
    Unit unit_;
};

}  // namespace lomaris
