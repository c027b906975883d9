#pragma once

#include "platform/linux/x11/window_class.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris {

/// The name for people of an installed application, from its desktop entry in the user's language: the entry named
/// after its own identifier, else after the class of its windows as it stands or in small letters, else after their
/// instance name. Nothing where no entry gives a name. `applicationIdentifier` may be empty; all names come from other
/// programs and may hold anything. Reads files only.
[[nodiscard]] std::optional<std::string> installedApplicationName(std::string_view applicationIdentifier,
                                                                  const WindowClass& windowClass);

/// The same for an entry of exactly this name in these data directories, the first directory that has the entry wins.
[[nodiscard]] std::optional<std::string> desktopEntryName(std::string_view entry,
                                                          std::span<const std::string> dataDirectories,
                                                          std::span<const std::string> languages);

/// The directories with data of applications, best first, from the environment as the desktop base directories have it.
[[nodiscard]] std::vector<std::string> dataDirectoriesOfProcess();

}  // namespace lomaris
