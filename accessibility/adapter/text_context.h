#pragma once

#include "platform/attribute_value.h"
#include "text/text.h"

#include <cstdint>
#include <optional>

namespace lomaris {

/// The text around a selection. Either side may begin or end with half a surrogate pair.
struct ExtractedContext {
    Text before;
    Text after;

    friend bool operator==(const ExtractedContext&, const ExtractedContext&) = default;
};

/// Cuts of a whole text, in UTF-16 units as they stand. Pure functions; a range that does not lie inside of the text,
/// or has no position, gives nothing.
namespace TextContext {

/// The part of `fullText` at `range`. A length of 0 gives the empty text.
[[nodiscard]] std::optional<Text> selectedText(TextView fullText, const TextRange& range);

/// Up to `beforeLimit` units that end where the range begins and up to `afterLimit` units that begin where it ends. A
/// negative limit gives nothing.
[[nodiscard]] std::optional<ExtractedContext> extract(const std::optional<Text>& fullText,
                                                      const std::optional<TextRange>& range, std::int64_t beforeLimit,
                                                      std::int64_t afterLimit);

}  // namespace TextContext

}  // namespace lomaris
