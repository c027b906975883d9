#pragma once

#include "text/text.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Whether `bytes` are well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF. A byte-order mark
/// is ordinary text. The empty string is valid.
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

/// `bytes` as a text; every maximal ill-formed part becomes one U+FFFD. Never fails; a byte-order mark stays.
[[nodiscard]] Text textFromUtf8(std::string_view bytes);

/// `bytes` as a text, or nothing where they are not well-formed UTF-8.
[[nodiscard]] std::optional<Text> textFromValidUtf8(std::string_view bytes);

/// `text` as well-formed UTF-8; half a surrogate pair becomes U+FFFD.
[[nodiscard]] std::string utf8FromText(TextView text);

/// Appends `utf8FromText(text)` to `output` without an intermediate string.
void appendUtf8(std::string& output, TextView text);

}  // namespace lomaris
