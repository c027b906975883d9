#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace lomaris {

/// Returns the value of `Name` in a desktop entry: in the first of `languages` (such as "de_AT") for which there is
/// one, otherwise the value without a locale. nullopt if the entry is not of type Application, is hidden, or has no
/// name or an empty one. `contents` may be any bytes. The result has the escape sequences of the format replaced, and
/// is not checked to be UTF-8.
[[nodiscard]] std::optional<std::string> nameInDesktopEntry(std::string_view contents,
                                                            std::span<const std::string> languages);

}  // namespace lomaris
