#pragma once

#include "platform/pasteboard.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Names of what a program can ask the owner of a selection for, as X11 programs spell them.
namespace clipboard_target {

inline constexpr std::string_view multiple = "MULTIPLE";
inline constexpr std::string_view plainText = "text/plain";
inline constexpr std::string_view secretHint = "x-kde-passwordManagerHint";
inline constexpr std::string_view string = "STRING";
inline constexpr std::string_view targets = "TARGETS";
inline constexpr std::string_view text = "TEXT";
inline constexpr std::string_view timestamp = "TIMESTAMP";
inline constexpr std::string_view utf8PlainText = "text/plain;charset=utf-8";
inline constexpr std::string_view utf8String = "UTF8_STRING";

}  // namespace clipboard_target

/// The longest name of a target that is dealt with, in bytes; no program that means well has a longer one.
inline constexpr std::size_t longestTargetName = 255;

/// Whether the target names contents, and not a question about the selection or an order to its owner.
[[nodiscard]] bool isContentsTarget(std::string_view target);

/// The pasteboard type of a target: plain text in UTF-8 has its own name there, every other target keeps its name.
[[nodiscard]] PasteboardType typeOfTarget(std::string_view target);

/// The target under which a type is offered.
[[nodiscard]] std::string targetOfType(std::string_view type);

/// Latin-1, the encoding of the target STRING, as UTF-8.
[[nodiscard]] std::string utf8FromLatin1(std::string_view bytes);

/// UTF-8 as Latin-1, or nothing where it does not fit or is ill-formed.
[[nodiscard]] std::optional<std::string> latin1FromUtf8(std::string_view bytes);

}  // namespace lomaris
