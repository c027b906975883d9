#include "accessibility/adapter/focused_element.h"

#include "accessibility/model/bridge_error.h"
#include "platform/attributes.h"

#include <chrono>
#include <utility>

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

FocusedElement focusedElement(Platform& platform) {
    Accessibility& accessibility = platform.accessibility();
    const auto application = platform.workspace().frontmostApplication();
    if (!application) {
        const auto answer = copyFocusedElementWithRetries(platform, accessibility.systemWideElement());
        if (!answer.element) {
            throw BridgeError::focusedElementUnavailable(answer.error, std::nullopt);
        }
        return {*answer.element, std::nullopt};
    }

    const Element applicationElement = accessibility.applicationElement(application->processIdentifier);
    const auto answer = copyFocusedElementWithRetries(platform, applicationElement);
    if (answer.element) {
        return {*answer.element, application};
    }
    if (const auto found = findFocusedTextDescendant(accessibility, applicationElement)) {
        return {*found, application};
    }
    const auto systemAnswer = copyFocusedElementWithRetries(platform, accessibility.systemWideElement());
    if (systemAnswer.element) {
        return {*systemAnswer.element, application};
    }
    throw BridgeError::focusedElementUnavailable(answer.error, application->localizedName);
}

}  // namespace lomaris
