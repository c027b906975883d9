#include "accessibility/adapter/clipboard_selection.h"

#include "accessibility/model/bridge_error.h"
#include "platform/attributes.h"

#include <chrono>
#include <functional>
#include <utility>

namespace lomaris {

namespace {

constexpr Duration pauseBeforeSecondLook = std::chrono::milliseconds(50);

/// Returns a function that presses the menu item, or an empty function if there is no Copy command.
std::function<void()> pressOf(Accessibility& accessibility, const std::optional<CopyCommand>& copyCommand) {
    if (!copyCommand) {
        return nullptr;
    }
    return [&accessibility, element = copyCommand->element] {
        if (accessibility.performAction(element, action::press) != AXError::success) {
            throw BridgeError::clipboardFallbackFailed(u"the target application's Copy command was unavailable");
        }
    };
}

}  // namespace

std::optional<CopyCommand> findCopyCommandWithRetry(Platform& platform,
                                                    const std::optional<RunningApplication>& application) {
    auto command = findCopyCommand(platform.accessibility(), application);
    if (!command) {
        platform.scheduling().sleep(pauseBeforeSecondLook);
        command = findCopyCommand(platform.accessibility(), application);
    }
    return command;
}

SelectionSnapshot readSelectionWithKeyboardClipboardFallback(Platform& platform, KeyboardClipboardFallback& fallback,
                                                             std::optional<RunningApplication> application,
                                                             bool allowed, ClipboardSelectionReadPolicy policy,
                                                             const std::optional<CopyCommand>& copyCommand) {
    if (!allowed) {
        throw BridgeError::clipboardFallbackDisabled();
    }
    Accessibility& accessibility = platform.accessibility();
    if (!accessibility.isProcessTrusted(TrustPrompt::none)) {
        throw BridgeError::accessibilityPermissionRequired();
    }
    if (!application) {
        application = platform.workspace().frontmostApplication();
    }
    if (!application) {
        throw BridgeError::focusedApplicationUnavailable(AXError::noValue);
    }

    SelectionPayload payload;
    payload.selectedText =
        fallback.readSelectedText(application->processIdentifier, policy, pressOf(accessibility, copyCommand));
    payload.applicationName = std::move(application->localizedName);
    payload.bundleIdentifier = std::move(application->bundleIdentifier);
    payload.processIdentifier = application->processIdentifier;
    payload.inputActivity = sampleInputActivity(platform.events());
    payload.supportsDirectReplacement = false;
    payload.selectionMethod = selection_method::keyboardClipboardFallback;
    return {accessibility.applicationElement(application->processIdentifier), std::move(payload),
            ReplacementStrategy::keyboardClipboard};
}

}  // namespace lomaris
