#include "accessibility/model/bridge_error.h"

#include "text/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

struct Example {
    BridgeError error;
    BridgeError::Case errorCase;
    std::string message;
};

TEST(BridgeError, DescribesEachCaseInOneSentence) {
    const std::vector<Example> examples = {
        {BridgeError::focusedApplicationUnavailable(AXError::noValue), BridgeError::Case::focusedApplicationUnavailable,
         "Could not access the focused application (AX error -25212)."},
        {BridgeError::focusedElementUnavailable(AXError::noValue, std::nullopt),
         BridgeError::Case::focusedElementUnavailable, "Could not access the focused text element (AX error -25212)."},
        {BridgeError::focusedElementUnavailable(AXError::noValue, u"Notes"),
         BridgeError::Case::focusedElementUnavailable,
         "Could not access the focused text element in Notes (AX error -25212)."},
        {BridgeError::focusedElementUnavailable(AXError::success, u""), BridgeError::Case::focusedElementUnavailable,
         "Could not access the focused text element in  (AX error 0)."},
        {BridgeError::selectedTextUnavailable(AXError::attributeUnsupported),
         BridgeError::Case::selectedTextUnavailable,
         "The focused element does not expose selected text (AX error -25205)."},
        {BridgeError::replacementFailed(AXError::attributeUnsupported), BridgeError::Case::replacementFailed,
         "Could not replace the selected text (AX error -25205)."},
        {BridgeError::clipboardFallbackFailed(u"could not create keyboard events"),
         BridgeError::Case::clipboardFallbackFailed,
         "Keyboard/clipboard fallback failed: could not create keyboard events"},
        {BridgeError::invalidArguments(u"--delay requires a value."), BridgeError::Case::invalidArguments,
         "--delay requires a value."},
        {BridgeError::invalidArguments(u""), BridgeError::Case::invalidArguments, ""},
        {BridgeError::invalidInput(u"Replacement text must not be empty."), BridgeError::Case::invalidInput,
         "Replacement text must not be empty."},
        {BridgeError::accessibilityPermissionRequired(), BridgeError::Case::accessibilityPermissionRequired,
         "Accessibility permission is required. Open System Settings > Privacy & Security > Accessibility and enable "
         "Lomaris (or the terminal running it)."},
        {BridgeError::noTextSelected(), BridgeError::Case::noTextSelected, "Select some text first."},
        {BridgeError::directReplacementUnsupported(), BridgeError::Case::directReplacementUnsupported,
         "This text field does not support direct accessibility-based replacement."},
        {BridgeError::clipboardFallbackDisabled(), BridgeError::Case::clipboardFallbackDisabled,
         "This application requires keyboard/clipboard fallback, but it is disabled by Lomaris settings or "
         "administrator policy."},
        {BridgeError::keyboardEventPermissionRequired(), BridgeError::Case::keyboardEventPermissionRequired,
         "Keyboard control permission is required for this application. Remove and re-add Lomaris under System "
         "Settings > Privacy & Security > Accessibility, then relaunch Lomaris."},
        {BridgeError::selectionChanged(), BridgeError::Case::selectionChanged,
         "The original selection changed while Lomaris was working, so your document was left untouched. Select the "
         "text and try again."},
    };
    for (const auto& example : examples) {
        EXPECT_EQ(utf8FromText(example.error.errorDescription()), example.message);
        EXPECT_EQ(example.error.errorCase(), example.errorCase) << example.message;
    }
}

TEST(BridgeError, WritesErrorCodesInSignedDecimal) {
    const auto messageFor = [](std::int32_t code) {
        return utf8FromText(BridgeError::replacementFailed(static_cast<AXError>(code)).errorDescription());
    };
    EXPECT_EQ(messageFor(7), "Could not replace the selected text (AX error 7).");
    EXPECT_EQ(messageFor(-2147483647 - 1), "Could not replace the selected text (AX error -2147483648).");
}

TEST(BridgeError, IsEqualByCaseAndPayload) {
    EXPECT_EQ(BridgeError::selectedTextUnavailable(AXError::failure),
              BridgeError::selectedTextUnavailable(AXError::failure));
    EXPECT_FALSE(BridgeError::selectedTextUnavailable(AXError::failure) ==
                 BridgeError::selectedTextUnavailable(AXError::noValue));
    EXPECT_FALSE(BridgeError::selectedTextUnavailable(AXError::failure) ==
                 BridgeError::replacementFailed(AXError::failure));
    EXPECT_FALSE(BridgeError::focusedElementUnavailable(AXError::failure, u"") ==
                 BridgeError::focusedElementUnavailable(AXError::failure, std::nullopt));
    EXPECT_FALSE(BridgeError::invalidInput(u"a") == BridgeError::invalidInput(u"b"));
}

TEST(BridgeError, NamesItsCaseInWhat) {
    const std::vector<std::pair<BridgeError, std::string>> examples = {
        {BridgeError::focusedApplicationUnavailable(AXError::failure), "focusedApplicationUnavailable"},
        {BridgeError::focusedElementUnavailable(AXError::failure, u"Notes"), "focusedElementUnavailable"},
        {BridgeError::selectedTextUnavailable(AXError::failure), "selectedTextUnavailable"},
        {BridgeError::replacementFailed(AXError::failure), "replacementFailed"},
        {BridgeError::clipboardFallbackFailed(u"why"), "clipboardFallbackFailed"},
        {BridgeError::invalidArguments(u"why"), "invalidArguments"},
        {BridgeError::invalidInput(u"why"), "invalidInput"},
        {BridgeError::accessibilityPermissionRequired(), "accessibilityPermissionRequired"},
        {BridgeError::noTextSelected(), "noTextSelected"},
        {BridgeError::directReplacementUnsupported(), "directReplacementUnsupported"},
        {BridgeError::clipboardFallbackDisabled(), "clipboardFallbackDisabled"},
        {BridgeError::keyboardEventPermissionRequired(), "keyboardEventPermissionRequired"},
        {BridgeError::selectionChanged(), "selectionChanged"},
    };
    for (const auto& [error, name] : examples) {
        const std::exception& asCaught = error;
        EXPECT_EQ(asCaught.what(), name);
    }
}

}  // namespace
}  // namespace lomaris
