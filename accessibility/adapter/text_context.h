#pragma once

#include "accessibility/model/context_limits.h"
#include "platform/attribute_value.h"
#include "text/text.h"

#include <optional>

namespace lomaris {

/// The text before and after a selection. A cut may leave half a surrogate pair at either end.
struct ExtractedContext {
    Text before;
    Text after;

    friend bool operator==(const ExtractedContext&, const ExtractedContext&) = default;
};

/// Cuts of a whole text, in UTF-16 units. Pure functions. They return nullopt if the range is not inside the text.
namespace TextContext {

/// Returns the part of `fullText` at `range`, which is empty if the length is 0.
[[nodiscard]] std::optional<Text> selectedText(TextView fullText, const TextRange& range);

/// Returns up to `limits.before` units before the range and up to `limits.after` units after it. Also returns nullopt
/// if the text or the range is absent, or a limit is negative.
[[nodiscard]] std::optional<ExtractedContext> extract(const std::optional<Text>& fullText,
                                                      const std::optional<TextRange>& range, ContextLimits limits);

}  // namespace TextContext

}  // namespace lomaris
