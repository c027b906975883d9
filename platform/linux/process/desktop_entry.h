#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace lomaris {

/// The name of the application that a desktop entry describes, in the first of `languages` that it has one in, else its
/// plain name. Nothing where the contents describe no application, hide the entry, or give no name or an empty one.
/// `contents` may be anything. Bytes come back as they stand, escapes resolved.
[[nodiscard]] std::optional<std::string> nameInDesktopEntry(std::string_view contents,
                                                            std::span<const std::string> languages);

}  // namespace lomaris
