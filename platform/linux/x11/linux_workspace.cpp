#include "platform/linux/x11/linux_workspace.h"

#include "platform/linux/applications/application_table.h"
#include "platform/linux/process/linux_process.h"
#include "platform/linux/x11/application_name.h"
#include "platform/linux/x11/front_window.h"
#include "platform/linux/x11/x11_properties.h"
#include "text/utf8.h"

#include <algorithm>

namespace lomaris {

namespace {

/// More windows than a session has. Another program sets the list, which may have any length.
constexpr std::size_t mostWindows = 512;

std::optional<Text> bundleIdentifierOf(const WindowIdentity& identity) {
    if (!identity.applicationIdentifier.empty()) {
        return textFromUtf8(identity.applicationIdentifier);
    }
    const auto* const known = applications::findApplication(identity.windowClass.className);
    if (known == nullptr || known->bundleIdentifier.empty()) {
        return std::nullopt;
    }
    return textFromUtf8(known->bundleIdentifier);
}

std::optional<Text> localizedNameOf(const WindowIdentity& identity) {
    if (const auto name = installedApplicationName(identity.applicationIdentifier, identity.windowClass)) {
        return textFromUtf8(*name);
    }
    const std::string& className = identity.windowClass.className;
    return className.empty() ? std::nullopt : std::optional(textFromUtf8(className));
}

/// Combines the identities of all windows of a process: the first non-empty value of each name.
std::optional<WindowIdentity> combined(const std::vector<WindowIdentity>& identities,
                                       ProcessIdentifier processIdentifier) {
    std::optional<WindowIdentity> result;
    for (const WindowIdentity& identity : identities) {
        if (identity.processIdentifier != processIdentifier) {
            continue;
        }
        if (!result) {
            result = identity;
            continue;
        }
        if (result->applicationIdentifier.empty()) {
            result->applicationIdentifier = identity.applicationIdentifier;
        }
        if (result->windowClass.className.empty()) {
            result->windowClass = identity.windowClass;
        }
    }
    return result;
}

/// The application of a process, from the identities of its windows. nullopt if the process does not exist.
std::optional<RunningApplication> describe(const std::vector<WindowIdentity>& identities,
                                           ProcessIdentifier processIdentifier) {
    const auto processName = nameOfProcess(processIdentifier);
    if (!processName) {
        return std::nullopt;
    }
    RunningApplication application{.processIdentifier = processIdentifier, .bundleIdentifier = {}, .localizedName = {}};
    if (const auto identity = combined(identities, processIdentifier)) {
        application.bundleIdentifier = bundleIdentifierOf(*identity);
        application.localizedName = localizedNameOf(*identity);
    } else {
        application.localizedName = textFromUtf8(*processName);
    }
    return application;
}

}  // namespace

std::optional<RunningApplication> LinuxWorkspace::frontmostApplication() {
    if (!connection_.isUsable()) {
        return std::nullopt;
    }
    const auto window = frontWindow(connection_);
    if (!window) {
        return std::nullopt;
    }
    const std::vector<WindowIdentity> known = identities(window);
    const auto processIdentifier = known.back().processIdentifier;
    return processIdentifier ? describe(known, *processIdentifier) : std::nullopt;
}

std::optional<RunningApplication> LinuxWorkspace::runningApplication(ProcessIdentifier processIdentifier) {
    return describe(connection_.isUsable() ? identities(std::nullopt) : std::vector<WindowIdentity>{},
                    processIdentifier);
}

std::vector<WindowIdentity> LinuxWorkspace::identities(std::optional<xcb_window_t> additional) {
    auto windows =
        receiveWindows(connection_, requestProperty(connection_, connection_.root(), connection_.atoms().clientList));
    windows.resize(std::min(windows.size(), mostWindows));
    if (additional) {
        windows.push_back(*additional);
    }
    return identifyWindows(connection_, windows);
}

}  // namespace lomaris
