#include "accessibility/adapter/attribute_access.h"

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

class AttributeAccess : public testing::Test {
protected:
    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedElement field = notes.addElement();
    SimulatedElement other = notes.addElement();
    Accessibility& accessibility = desktop.accessibility();

    /// Returns one value of every kind.
    std::vector<std::pair<std::string, AttributeValue>> everyKind() const {
        return {
            {"null", NullValue{}},
            {"text", Text(u"abc")},
            {"boolean", true},
            {"integer", std::int64_t{1}},
            {"other number", OtherNumber{1.5}},
            {"element", other.element()},
            {"elements", std::vector<Element>{other.element()}},
            {"mixed array", MixedArray{}},
            {"range", TextRange{3, 4}},
            {"other boxed value", OtherBoxedValue{}},
            {"other value", OtherValue{}},
        };
    }

    /// Asserts that `read` accepts only values of the kind named `kind`.
    template <typename Read>
    void expectOnly(const std::string& kind, const Read& read) {
        for (const auto& [name, value] : everyKind()) {
            field.answers("AXThing", value);
            EXPECT_EQ(read(), name == kind) << name;
        }
        field.answers("AXThing", AXError::attributeUnsupported);
        EXPECT_FALSE(read());
        field.answers("AXThing", AXError::cannotComplete);
        EXPECT_FALSE(read());
    }
};

TEST_F(AttributeAccess, ReadsOnlyAnElementAsAnElement) {
    expectOnly("element", [&] {
        const auto element = copyOptionalElementAttribute(accessibility, field.element(), "AXThing");
        return element && *element == other.element();
    });
}

TEST_F(AttributeAccess, ReadsOnlyAnArrayOfElementsAsElements) {
    expectOnly("elements", [&] {
        return copyOptionalElementArrayAttribute(accessibility, field.element(), "AXThing") ==
               std::vector<Element>{other.element()};
    });
}

TEST_F(AttributeAccess, ReadsOnlyATextAsAText) {
    expectOnly("text",
               [&] { return copyOptionalStringAttribute(accessibility, field.element(), "AXThing") == Text(u"abc"); });
}

TEST_F(AttributeAccess, DistinguishesAnEmptyTextFromAnAbsentOne) {
    field.answers("AXThing", Text());
    EXPECT_EQ(copyOptionalStringAttribute(accessibility, field.element(), "AXThing"), Text());
}

TEST_F(AttributeAccess, ReadsOnlyABooleanAsABoolean) {
    expectOnly("boolean", [&] { return copyOptionalBoolAttribute(accessibility, field.element(), "AXThing") == true; });
}

TEST_F(AttributeAccess, DistinguishesFalseFromAbsent) {
    field.answers("AXThing", false);
    EXPECT_EQ(copyOptionalBoolAttribute(accessibility, field.element(), "AXThing"), false);
}

TEST_F(AttributeAccess, ReadsOnlyABoxedRangeAsASelectedRange) {
    for (const auto& [name, value] : everyKind()) {
        field.answers(attribute::selectedTextRange, value);
        const auto range = copySelectedRange(accessibility, field.element());
        EXPECT_EQ(range, name == "range" ? std::optional(TextRange{3, 4}) : std::nullopt) << name;
    }
}

TEST_F(AttributeAccess, ReadsARangeOfLengthZeroAsPresent) {
    field.answers(attribute::selectedTextRange, TextRange{3, 0});
    EXPECT_EQ(copySelectedRange(accessibility, field.element()), (TextRange{3, 0}));
}

TEST_F(AttributeAccess, ReturnsNoChildrenForOtherValuesAndErrors) {
    field.answers(attribute::children, Text(u"none"));
    EXPECT_EQ(copyOptionalElementArrayAttribute(accessibility, field.element(), attribute::children),
              std::vector<Element>());
    field.answers(attribute::children, AXError::cannotComplete);
    EXPECT_EQ(copyOptionalElementArrayAttribute(accessibility, field.element(), attribute::children),
              std::vector<Element>());
}

TEST_F(AttributeAccess, IsFocusedOnlyIfTheAttributeIsTrue) {
    for (const auto& [name, value] : everyKind()) {
        field.answers(attribute::focused, value);
        EXPECT_EQ(isFocused(accessibility, field.element()), name == "boolean") << name;
    }
    field.answers(attribute::focused, std::int64_t{1});
    EXPECT_FALSE(isFocused(accessibility, field.element()));
    EXPECT_EQ(copyOptionalBoolAttribute(accessibility, field.element(), attribute::focused), std::nullopt);
    field.answers(attribute::focused, false);
    EXPECT_FALSE(isFocused(accessibility, field.element()));
    field.answers(attribute::focused, AXError::cannotComplete);
    EXPECT_FALSE(isFocused(accessibility, field.element()));
}

using Journal = std::vector<std::string>;

TEST_F(AttributeAccess, RaisesTheFocusedWindowAndWaits) {
    notes.element().answers(attribute::focusedWindow, field.element());
    raiseFocusedWindow(desktop, 812);
    EXPECT_EQ(desktop.journal(), (Journal{
                                     "0.000000000 applicationElement(812)",
                                     "0.000000000 copyAttribute(812, AXFocusedWindow) -> 812/1",
                                     "0.000000000 performAction(812/1, AXRaise) -> error -25206",
                                     "0.000000000 setAttribute(812/1, AXMain, true) -> error -25205",
                                     "0.000000000 setAttribute(812/1, AXFocused, true) -> error -25205",
                                     "0.000000000 sleep(0.100000000)",
                                 }));
    EXPECT_EQ(desktop.now(), 100ms);
}

TEST_F(AttributeAccess, RaisesTheMainWindowIfNoWindowIsFocused) {
    notes.element().answers(attribute::mainWindow, other.element());
    other.answersAction(action::raise, AXError::success);
    raiseFocusedWindow(desktop, 812);
    EXPECT_EQ(desktop.journal(), (Journal{
                                     "0.000000000 applicationElement(812)",
                                     "0.000000000 copyAttribute(812, AXFocusedWindow) -> error -25205",
                                     "0.000000000 copyAttribute(812, AXMainWindow) -> 812/2",
                                     "0.000000000 performAction(812/2, AXRaise) -> success",
                                     "0.000000000 setAttribute(812/2, AXMain, true) -> error -25205",
                                     "0.000000000 setAttribute(812/2, AXFocused, true) -> error -25205",
                                     "0.000000000 sleep(0.100000000)",
                                 }));
    EXPECT_EQ(desktop.now(), 100ms);
}

TEST_F(AttributeAccess, DoesNothingWithoutAWindow) {
    raiseFocusedWindow(desktop, 812);
    EXPECT_EQ(desktop.journal(), (Journal{
                                     "0.000000000 applicationElement(812)",
                                     "0.000000000 copyAttribute(812, AXFocusedWindow) -> error -25205",
                                     "0.000000000 copyAttribute(812, AXMainWindow) -> error -25205",
                                 }));
    EXPECT_EQ(desktop.now(), 0ns);
}

}  // namespace
}  // namespace lomaris
