#pragma once

#include "platform/linux/x11/window_class.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris {

/// Returns the display name of an installed application, from its desktop entry in the user's language. Searches for an
/// entry named like the application identifier, the class name of its windows, that name in lower case, and the
/// instance name, in this order. nullopt if no entry has a name. `applicationIdentifier` may be empty; all names come
/// from other programs and may be any bytes. Reads files.
[[nodiscard]] std::optional<std::string> installedApplicationName(std::string_view applicationIdentifier,
                                                                  const WindowClass& windowClass);

/// The same for the entry with exactly this name, from the first of the data directories that has it.
[[nodiscard]] std::optional<std::string> desktopEntryName(std::string_view entry,
                                                          std::span<const std::string> dataDirectories,
                                                          std::span<const std::string> languages);

/// The XDG data directories in order of preference: XDG_DATA_HOME and XDG_DATA_DIRS, or their defaults.
[[nodiscard]] std::vector<std::string> dataDirectoriesOfProcess();

}  // namespace lomaris
