#include "accessibility/adapter/text_context.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace lomaris::TextContext {

namespace {

/// Does not add location and length, because the sum may overflow.
bool liesInside(const TextRange& range, std::int64_t textLength) {
    return range.location != notFoundLocation && range.location >= 0 && range.length >= 0 &&
           range.location <= textLength && range.length <= textLength - range.location;
}

std::int64_t lengthOf(TextView text) { return static_cast<std::int64_t>(text.size()); }

Text cut(TextView text, std::int64_t location, std::int64_t length) {
    return Text(text.substr(static_cast<std::size_t>(location), static_cast<std::size_t>(length)));
}

}  // namespace

std::optional<Text> selectedText(TextView fullText, const TextRange& range) {
    if (!liesInside(range, lengthOf(fullText))) {
        return std::nullopt;
    }
    return cut(fullText, range.location, range.length);
}

std::optional<ExtractedContext> extract(const std::optional<Text>& fullText, const std::optional<TextRange>& range,
                                        ContextLimits limits) {
    if (!fullText || !range || limits.before < 0 || limits.after < 0 || !liesInside(*range, lengthOf(*fullText))) {
        return std::nullopt;
    }
    const std::int64_t end = range->location + range->length;
    const std::int64_t beforeLength = std::min(range->location, limits.before);
    const std::int64_t afterLength = std::min(limits.after, lengthOf(*fullText) - end);
    return ExtractedContext{cut(*fullText, range->location - beforeLength, beforeLength),
                            cut(*fullText, end, afterLength)};
}

}  // namespace lomaris::TextContext
