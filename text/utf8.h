#pragma once

#include "text/text.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// True if `bytes` are well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF. A byte-order mark
/// is ordinary text. The empty string is well-formed.
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

/// Converts `bytes` to UTF-16. Replaces every maximal ill-formed part by one U+FFFD and keeps a byte-order mark; never
/// fails.
[[nodiscard]] Text textFromUtf8(std::string_view bytes);

/// Converts `bytes` to UTF-16. Returns nullopt if they are not well-formed UTF-8.
[[nodiscard]] std::optional<Text> textFromValidUtf8(std::string_view bytes);

/// Converts `text` to well-formed UTF-8. Half a surrogate pair becomes U+FFFD.
[[nodiscard]] std::string utf8FromText(TextView text);

/// Appends `utf8FromText(text)` to `output` without an intermediate string.
void appendUtf8(std::string& output, TextView text);

}  // namespace lomaris
