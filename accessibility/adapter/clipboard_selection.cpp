#include "accessibility/adapter/clipboard_selection.h"

#include "platform/attributes.h"

#include <chrono>
#include <utility>
#include <variant>

namespace lomaris {

namespace {

constexpr Duration pauseBeforeSecondLook = std::chrono::milliseconds(50);

/// Returns a function that presses the menu item, or an empty function if there is no Copy command.
CopyItemPress pressOf(Accessibility& accessibility, const std::optional<CopyCommand>& copyCommand) {
    if (!copyCommand) {
        return nullptr;
    }
    return [&accessibility, element = copyCommand->element]() -> std::optional<BridgeError> {
        if (accessibility.performAction(element, action::press) != AXError::success) {
            return BridgeError::clipboardFallbackFailed(u"the target application's Copy command was unavailable");
        }
        return std::nullopt;
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
    return valueOrThrow(tryReadSelectionWithKeyboardClipboardFallback(platform, fallback, std::move(application),
                                                                      allowed, policy, copyCommand));
}

Outcome<SelectionSnapshot> tryReadSelectionWithKeyboardClipboardFallback(
    Platform& platform, KeyboardClipboardFallback& fallback, std::optional<RunningApplication> application,
    bool allowed, ClipboardSelectionReadPolicy policy, const std::optional<CopyCommand>& copyCommand) {
    if (!allowed) {
        return BridgeError::clipboardFallbackDisabled();
    }
    Accessibility& accessibility = platform.accessibility();
    if (!accessibility.isProcessTrusted(TrustPrompt::none)) {
        return BridgeError::accessibilityPermissionRequired();
    }
    if (!application) {
        application = platform.workspace().frontmostApplication();
    }
    if (!application) {
        return BridgeError::focusedApplicationUnavailable(AXError::noValue);
    }

    auto text =
        fallback.tryReadSelectedText(application->processIdentifier, policy, pressOf(accessibility, copyCommand));
    if (const BridgeError* const error = errorOf(text)) {
        return *error;
    }
    SelectionPayload payload;
    payload.selectedText = std::get<Text>(std::move(text));
    payload.applicationName = std::move(application->localizedName);
    payload.bundleIdentifier = std::move(application->bundleIdentifier);
    payload.processIdentifier = application->processIdentifier;
    payload.inputActivity = sampleInputActivity(platform.events());
    payload.supportsDirectReplacement = false;
    payload.selectionMethod = selection_method::keyboardClipboardFallback;
    return SelectionSnapshot{accessibility.applicationElement(application->processIdentifier), std::move(payload),
                             ReplacementStrategy::keyboardClipboard};
}

}  // namespace lomaris
