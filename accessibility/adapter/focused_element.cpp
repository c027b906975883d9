#include "accessibility/adapter/focused_element.h"

#include "platform/attributes.h"

#include <chrono>

namespace lomaris {

namespace {

constexpr int maximumAttempts = 5;
constexpr Duration pauseBeforeRetry = std::chrono::milliseconds(100);

/// Copies the focused element from an application or the system-wide element. Retries while the error is
/// `cannotComplete`.
ElementAnswer copyFocusedElementWithRetries(Platform& platform, const Element& from) {
    Accessibility& accessibility = platform.accessibility();
    ElementAnswer answer = accessibility.copyElementAttribute(from, attribute::focusedUIElement);
    for (int attempt = 1; attempt < maximumAttempts && answer.error == AXError::cannotComplete; ++attempt) {
        platform.scheduling().sleep(pauseBeforeRetry);
        answer = accessibility.copyElementAttribute(from, attribute::focusedUIElement);
    }
    if (answer.error != AXError::success) {
        answer.element.reset();
    }
    return answer;
}

}  // namespace

FocusedElement focusedElement(Platform& platform) { return valueOrThrow(tryFocusedElement(platform)); }

Outcome<FocusedElement> tryFocusedElement(Platform& platform) {
    Accessibility& accessibility = platform.accessibility();
    const auto application = platform.workspace().frontmostApplication();
    if (!application) {
        const auto answer = copyFocusedElementWithRetries(platform, accessibility.systemWideElement());
        if (!answer.element) {
            return BridgeError::focusedElementUnavailable(answer.error, std::nullopt);
        }
        return FocusedElement{*answer.element, std::nullopt};
    }

    const Element applicationElement = accessibility.applicationElement(application->processIdentifier);
    const auto answer = copyFocusedElementWithRetries(platform, applicationElement);
    if (answer.element) {
        return FocusedElement{*answer.element, application};
    }
    if (const auto found = findFocusedTextDescendant(accessibility, applicationElement)) {
        return FocusedElement{*found, application};
    }
    const auto systemAnswer = copyFocusedElementWithRetries(platform, accessibility.systemWideElement());
    if (systemAnswer.element) {
        return FocusedElement{*systemAnswer.element, application};
    }
    return BridgeError::focusedElementUnavailable(answer.error, application->localizedName);
}

}  // namespace lomaris
