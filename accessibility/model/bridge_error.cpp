#include "accessibility/model/bridge_error.h"

#include <string>
#include <utility>

namespace lomaris {

namespace {

Text withCode(TextView sentence, AXError error) {
    Text message(sentence);
    message += u" (AX error ";
    for (const char digit : std::to_string(codeOf(error))) {
        message.push_back(static_cast<char16_t>(digit));
    }
    message += u").";
    return message;
}

}  // namespace

BridgeError::BridgeError(Case errorCase, AXError code, std::optional<Text> text)
    : case_(errorCase), code_(code), text_(std::move(text)) {}

BridgeError BridgeError::focusedApplicationUnavailable(AXError code) {
    return BridgeError(Case::focusedApplicationUnavailable, code);
}

BridgeError BridgeError::focusedElementUnavailable(AXError code, std::optional<Text> applicationName) {
    return BridgeError(Case::focusedElementUnavailable, code, std::move(applicationName));
}

BridgeError BridgeError::selectedTextUnavailable(AXError code) {
    return BridgeError(Case::selectedTextUnavailable, code);
}

BridgeError BridgeError::replacementFailed(AXError code) { return BridgeError(Case::replacementFailed, code); }

BridgeError BridgeError::clipboardFallbackFailed(Text detail) {
    return BridgeError(Case::clipboardFallbackFailed, AXError::success, std::move(detail));
}

BridgeError BridgeError::invalidArguments(Text message) {
    return BridgeError(Case::invalidArguments, AXError::success, std::move(message));
}

BridgeError BridgeError::invalidInput(Text message) {
    return BridgeError(Case::invalidInput, AXError::success, std::move(message));
}

BridgeError BridgeError::accessibilityPermissionRequired() {
    return BridgeError(Case::accessibilityPermissionRequired);
}

BridgeError BridgeError::noTextSelected() { return BridgeError(Case::noTextSelected); }

BridgeError BridgeError::directReplacementUnsupported() { return BridgeError(Case::directReplacementUnsupported); }

BridgeError BridgeError::clipboardFallbackDisabled() { return BridgeError(Case::clipboardFallbackDisabled); }

BridgeError BridgeError::keyboardEventPermissionRequired() {
    return BridgeError(Case::keyboardEventPermissionRequired);
}

BridgeError BridgeError::selectionChanged() { return BridgeError(Case::selectionChanged); }

Text BridgeError::errorDescription() const {
    switch (case_) {
        case Case::focusedApplicationUnavailable:
            return withCode(u"Could not access the focused application", code_);
        case Case::focusedElementUnavailable:
            return withCode(u"Could not access the focused text element" + (text_ ? u" in " + *text_ : Text()), code_);
        case Case::selectedTextUnavailable:
            return withCode(u"The focused element does not expose selected text", code_);
        case Case::replacementFailed:
            return withCode(u"Could not replace the selected text", code_);
        case Case::clipboardFallbackFailed:
            return u"Keyboard/clipboard fallback failed: " + text_.value_or(Text());
        case Case::invalidArguments:
        case Case::invalidInput:
            return text_.value_or(Text());
        case Case::accessibilityPermissionRequired:
            return u"Accessibility permission is required. Open System Settings > Privacy & Security > Accessibility "
                   u"and "
                   u"enable Lomaris (or the terminal running it).";
        case Case::noTextSelected:
            return u"Select some text first.";
        case Case::directReplacementUnsupported:
            return u"This text field does not support direct accessibility-based replacement.";
        case Case::clipboardFallbackDisabled:
            return u"This application requires keyboard/clipboard fallback, but it is disabled by Lomaris settings or "
                   u"administrator policy.";
        case Case::keyboardEventPermissionRequired:
            return u"Keyboard control permission is required for this application. Remove and re-add Lomaris under "
                   u"System "
                   u"Settings > Privacy & Security > Accessibility, then relaunch Lomaris.";
        case Case::selectionChanged:
            return u"The original selection changed while Lomaris was working, so your document was left untouched. "
                   u"Select the text and try again.";
    }
    return {};
}

const char* BridgeError::what() const noexcept {
    switch (case_) {
        case Case::focusedApplicationUnavailable:
            return "focusedApplicationUnavailable";
        case Case::focusedElementUnavailable:
            return "focusedElementUnavailable";
        case Case::selectedTextUnavailable:
            return "selectedTextUnavailable";
        case Case::replacementFailed:
            return "replacementFailed";
        case Case::clipboardFallbackFailed:
            return "clipboardFallbackFailed";
        case Case::invalidArguments:
            return "invalidArguments";
        case Case::invalidInput:
            return "invalidInput";
        case Case::accessibilityPermissionRequired:
            return "accessibilityPermissionRequired";
        case Case::noTextSelected:
            return "noTextSelected";
        case Case::directReplacementUnsupported:
            return "directReplacementUnsupported";
        case Case::clipboardFallbackDisabled:
            return "clipboardFallbackDisabled";
        case Case::keyboardEventPermissionRequired:
            return "keyboardEventPermissionRequired";
        case Case::selectionChanged:
            return "selectionChanged";
    }
    return "BridgeError";
}

}  // namespace lomaris
