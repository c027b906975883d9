#pragma once

#include "platform/pasteboard.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Names of target atoms (ICCCM 2.6.2, and the MIME types that X11 programs use).
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

/// The longest target name that is supported, in bytes. Targets with longer names are ignored.
inline constexpr std::size_t longestTargetName = 255;

/// True if a conversion to the target returns contents. False for targets that return data about the selection or that
/// have side effects, and for empty and overlong names.
[[nodiscard]] bool isContentsTarget(std::string_view target);

/// The pasteboard type of a target: `pasteboard_type::string` for UTF8_STRING, otherwise the name of the target.
[[nodiscard]] PasteboardType typeOfTarget(std::string_view target);

/// The target of a pasteboard type; the inverse of `typeOfTarget`.
[[nodiscard]] std::string targetOfType(std::string_view type);

/// Converts Latin-1, the encoding of the type STRING, to UTF-8.
[[nodiscard]] std::string utf8FromLatin1(std::string_view bytes);

/// Converts UTF-8 to Latin-1. nullopt if it is not well-formed or has a character that Latin-1 lacks.
[[nodiscard]] std::optional<std::string> latin1FromUtf8(std::string_view bytes);

}  // namespace lomaris
