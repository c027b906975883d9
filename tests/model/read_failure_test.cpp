#include "accessibility/model/read_failure.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace lomaris {
namespace {

TEST(ReadFailure, NumbersFailuresOfHiddenSelectionsFromOneToThree) {
    struct Example {
        BridgeError error;
        std::int64_t value;
        bool maySelect;
    };
    const std::vector<Example> examples = {
        {BridgeError::noTextSelected(), 1, true},
        {BridgeError::selectedTextUnavailable(AXError::noValue), 2, true},
        {BridgeError::focusedElementUnavailable(AXError::noValue, std::nullopt), 3, true},
        {BridgeError::focusedApplicationUnavailable(AXError::noValue), 4, false},
        {BridgeError::replacementFailed(AXError::failure), 4, false},
        {BridgeError::clipboardFallbackFailed(u""), 4, false},
        {BridgeError::invalidArguments(u""), 4, false},
        {BridgeError::invalidInput(u""), 4, false},
        {BridgeError::accessibilityPermissionRequired(), 4, false},
        {BridgeError::directReplacementUnsupported(), 4, false},
        {BridgeError::clipboardFallbackDisabled(), 4, false},
        {BridgeError::keyboardEventPermissionRequired(), 4, false},
        {BridgeError::selectionChanged(), 4, false},
    };
    for (const auto& example : examples) {
        const ReadFailure failure = readFailureOf(example.error);
        EXPECT_EQ(static_cast<std::int64_t>(failure), example.value) << example.error.what();
        EXPECT_EQ(maySelectWithoutShowing(failure), example.maySelect) << example.error.what();
    }
}

}  // namespace
}  // namespace lomaris
