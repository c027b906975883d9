#include "platform/macos/workspace.h"

#include "platform/macos/core_foundation.h"
#include "platform/macos/shielded_call.h"

#include <AppKit/AppKit.h>
#include <signal.h>

#include <cerrno>
#include <chrono>

namespace lomaris::macos {

namespace {

/// A change in another application reaches this process in several steps; only the first may be pending already.
constexpr Duration newsMayTake = std::chrono::milliseconds(1);

std::optional<Text> optionalTextFrom(NSString* string) {
    return string == nil ? std::nullopt : std::optional(textFrom((__bridge CFStringRef)string));
}

/// True if a process with this identifier exists, even if the workspace's state is stale.
bool isAlive(pid_t processIdentifier) {
    return processIdentifier > 0 && (kill(processIdentifier, 0) == 0 || errno != ESRCH);
}

std::optional<RunningApplication> describe(NSRunningApplication* application) {
    if (application == nil || application.terminated || !isAlive(application.processIdentifier)) {
        return std::nullopt;
    }
    return RunningApplication{application.processIdentifier, optionalTextFrom(application.bundleIdentifier),
                              optionalTextFrom(application.localizedName)};
}

}  // namespace

std::optional<RunningApplication> MacOSWorkspace::frontmostApplication() {
    runLoop_.serveWaiting(newsMayTake);
    return answerOf<std::optional<RunningApplication>>(
        [] { return describe(NSWorkspace.sharedWorkspace.frontmostApplication); });
}

std::optional<RunningApplication> MacOSWorkspace::runningApplication(ProcessIdentifier processIdentifier) {
    if (!isAlive(processIdentifier)) {
        return std::nullopt;
    }
    runLoop_.serveWaiting(newsMayTake);
    return answerOf<std::optional<RunningApplication>>([processIdentifier] {
        return describe([NSRunningApplication runningApplicationWithProcessIdentifier:processIdentifier]);
    });
}

}  // namespace lomaris::macos
