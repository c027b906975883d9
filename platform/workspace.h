#pragma once

#include "platform/accessibility.h"
#include "text/text.h"

#include <optional>

namespace lomaris {

/// What the platform says of a running application at the moment of asking. A plain value; it does not follow the
/// application afterwards.
struct RunningApplication {
    ProcessIdentifier processIdentifier = 0;
    /// Reverse-DNS identifier ("org.mozilla.firefox"), absent where the application has none.
    std::optional<Text> bundleIdentifier;
    /// Name for people, in the user's language, absent where the application has none. May be present and empty.
    std::optional<Text> localizedName;

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// The applications of the user's session. Called on the main thread; never throws.
class Workspace {
public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    /// The application in front, asked afresh on each call, or nothing where none is or it cannot be told. The result
    /// is the caller's.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() = 0;

    /// The running application with this process identifier, or nothing where there is none. The result is the
    /// caller's.
    [[nodiscard]] virtual std::optional<RunningApplication> runningApplication(ProcessIdentifier processIdentifier) = 0;
};

}  // namespace lomaris
