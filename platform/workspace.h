#pragma once

#include "platform/accessibility.h"
#include "text/text.h"

#include <optional>

namespace lomaris {

/// A running application at the time of the call. A plain value that does not follow later changes.
struct RunningApplication {
    ProcessIdentifier processIdentifier = 0;
    /// Reverse-DNS identifier ("org.mozilla.firefox"); absent if the application has none.
    std::optional<Text> bundleIdentifier;
    /// Display name in the user's language; absent if the application has none. May be present and empty.
    std::optional<Text> localizedName;

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// The applications of the user's session. Main thread only; never throws.
class Workspace {
public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    /// The frontmost application, determined anew on each call; nullopt if there is none or it cannot be determined.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() = 0;

    /// The running application with this process identifier; nullopt if there is none.
    [[nodiscard]] virtual std::optional<RunningApplication> runningApplication(ProcessIdentifier processIdentifier) = 0;
};

}  // namespace lomaris
