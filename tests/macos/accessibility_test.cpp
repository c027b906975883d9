#include "tests/macos/fake_platform_test.h"

#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using MacOSAccessibility = FakePlatformTest;

TEST_F(MacOSAccessibility, AsksTheUserOnlyWhereItMay) {
    desktop().isTrusted = false;
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_EQ(desktop().promptCount, 0);
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::ask));
    EXPECT_EQ(desktop().promptCount, 1);
    desktop().isTrusted = true;
    EXPECT_TRUE(accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_TRUE(accessibility().isProcessTrusted(TrustPrompt::ask));
    EXPECT_EQ(desktop().promptCount, 1);
}

TEST_F(MacOSAccessibility, HandsEveryCodeThroughAsItIs) {
    const Element element = fieldElement();
    for (const std::int32_t code : failureCodes) {
        const auto given = static_cast<::AXError>(code);
        const auto expected = static_cast<AXError>(code);
        field().attributes["AXRole"] = {given, nullptr};
        field().settable.insert("AXRole");
        field().onSet = [given](const std::string&, CFTypeRef) { return given; };
        field().actions["AXPress"] = given;
        field().settableError = given;
        field().processError = given;
        EXPECT_EQ(accessibility().copyAttribute(element, "AXRole"), (AttributeAnswer{expected, NullValue{}}));
        const ElementAnswer asElement = accessibility().copyElementAttribute(element, "AXRole");
        EXPECT_EQ(asElement.error, expected);
        EXPECT_FALSE(asElement.element.has_value());
        EXPECT_EQ(accessibility().setAttribute(element, "AXRole", true), expected);
        EXPECT_EQ(accessibility().isAttributeSettable(element, "AXRole"), (SettableAnswer{expected, false}));
        EXPECT_EQ(accessibility().performAction(element, "AXPress"), expected);
        EXPECT_EQ(accessibility().processIdentifier(element), std::nullopt);
    }
}

TEST_F(MacOSAccessibility, ASuccessWithoutAValueStaysVisible) {
    field().attributes["AXFocusedUIElement"] = {kAXErrorSuccess, nullptr};
    EXPECT_EQ(accessibility().copyAttribute(fieldElement(), "AXFocusedUIElement"),
              (AttributeAnswer{AXError::success, NullValue{}}));
    const ElementAnswer answer = accessibility().copyElementAttribute(fieldElement(), "AXFocusedUIElement");
    EXPECT_EQ(answer.error, AXError::success);
    EXPECT_FALSE(answer.element.has_value());
}

TEST_F(MacOSAccessibility, TheNullObjectIsNoElement) {
    field().attributes["AXFocusedUIElement"] = {kAXErrorSuccess, heldConstant(kCFNull)};
    const ElementAnswer answer = accessibility().copyElementAttribute(fieldElement(), "AXFocusedUIElement");
    EXPECT_EQ(answer.error, AXError::success);
    EXPECT_FALSE(answer.element.has_value());
}

TEST_F(MacOSAccessibility, AValueBesideAnErrorIsLetGo) {
    field().attributes["AXRole"] = {kAXErrorNoValue, makeString(u"AXButton")};
    EXPECT_EQ(accessibility().copyAttribute(fieldElement(), "AXRole"),
              (AttributeAnswer{AXError::noValue, NullValue{}}));
    EXPECT_FALSE(accessibility().copyElementAttribute(fieldElement(), "AXRole").element.has_value());
}

TEST_F(MacOSAccessibility, WhatIsTakenAsAnElementAndIsNoneNeverReachesThePlatform) {
    for (const Held& value : {makeString(u"x"), makeDate(), makeArray({}), boxPoint(), heldConstant(kCFBooleanTrue),
                              makeNumber(std::int32_t{7})}) {
        field().attributes["AXFocusedUIElement"] = {kAXErrorSuccess, value};
        const ElementAnswer answer = accessibility().copyElementAttribute(fieldElement(), "AXFocusedUIElement");
        ASSERT_EQ(answer.error, AXError::success);
        ASSERT_TRUE(answer.element.has_value());
        const Element& none = *answer.element;
        desktop().crossings.clear();
        const std::vector<Element> elements{none, fieldElement()};
        const std::vector<std::string_view> names{"AXRole", "AXTitle"};
        EXPECT_EQ(accessibility().copyAttribute(none, "AXRole"),
                  (AttributeAnswer{AXError::illegalArgument, NullValue{}}));
        EXPECT_EQ(accessibility().copyElementAttribute(none, "AXRole").error, AXError::illegalArgument);
        EXPECT_EQ(accessibility().copyAttributes(elements, names),
                  (std::vector<std::vector<AttributeAnswer>>{
                      {{AXError::illegalArgument, NullValue{}}, {AXError::illegalArgument, NullValue{}}},
                      {{AXError::attributeUnsupported, NullValue{}}, {AXError::attributeUnsupported, NullValue{}}}}));
        EXPECT_EQ(accessibility().setAttribute(none, "AXRole", true), AXError::illegalArgument);
        EXPECT_EQ(
            accessibility().areAttributesSettable(elements, "AXRole"),
            (std::vector<SettableAnswer>{{AXError::illegalArgument, false}, {AXError::attributeUnsupported, false}}));
        EXPECT_EQ(accessibility().performAction(none, "AXPress"), AXError::illegalArgument);
        EXPECT_EQ(accessibility().processIdentifier(none), std::nullopt);
        EXPECT_EQ(none, none);
        EXPECT_FALSE(none == fieldElement());
        EXPECT_EQ(desktop().crossings, crossingsOf({"copy AXRole AXTitle", "settable AXRole"}));
    }
}

TEST_F(MacOSAccessibility, ElementsAreEqualAsThePlatformSays) {
    EXPECT_EQ(fieldElement(), fieldElement());
    EXPECT_FALSE(fieldElement() == elementFrom(makeElementObject({42, 8})));
    EXPECT_EQ(accessibility().applicationElement(42), accessibility().applicationElement(42));
    EXPECT_FALSE(accessibility().applicationElement(42) == accessibility().applicationElement(43));
    EXPECT_EQ(accessibility().systemWideElement(), accessibility().systemWideElement());
    EXPECT_FALSE(accessibility().systemWideElement() == accessibility().applicationElement(42));
    EXPECT_FALSE(elementFrom(nullptr) == fieldElement());
    EXPECT_FALSE(fieldElement() == elementFrom(nullptr));
    EXPECT_EQ(elementFrom(nullptr), elementFrom(nullptr));
}

TEST_F(MacOSAccessibility, TellsTheProcessOfAnElement) {
    EXPECT_EQ(accessibility().processIdentifier(accessibility().applicationElement(42)), 42);
    EXPECT_EQ(accessibility().processIdentifier(fieldElement()), 42);
}

TEST_F(MacOSAccessibility, AsksForEachElementWhetherAnAttributeCanBeSet) {
    field().settable.insert("AXSelectedText");
    desktop().at({42, 8}).attributes["AXSelectedText"] = {kAXErrorSuccess, nullptr};
    const std::vector<Element> elements{fieldElement(), elementFrom(makeElementObject({42, 8})),
                                        elementFrom(makeElementObject({42, 9}))};
    EXPECT_EQ(accessibility().areAttributesSettable(elements, "AXSelectedText"),
              (std::vector<SettableAnswer>{
                  {AXError::success, true}, {AXError::success, false}, {AXError::invalidUIElement, false}}));
}

TEST_F(MacOSAccessibility, PerformsActionsByName) {
    field().actions["AXRaise"] = kAXErrorSuccess;
    EXPECT_EQ(accessibility().performAction(fieldElement(), "AXRaise"), AXError::success);
    EXPECT_EQ(accessibility().performAction(fieldElement(), "AXPress"), AXError::actionUnsupported);
    EXPECT_EQ(desktop().crossings, crossingsOf({"perform AXRaise", "perform AXPress"}));
}

TEST_F(MacOSAccessibility, ComparesUnderTheLocaleOfTheUser) {
    EXPECT_TRUE(accessibility().containsIgnoringCase(u"MainEDITORView", u"editor"));
    setUserLanguage("tr");
    EXPECT_FALSE(accessibility().containsIgnoringCase(u"MainEDITORView", u"editor"));
    EXPECT_TRUE(accessibility().containsIgnoringCase(u"MainEditorView", u"editor"));
    EXPECT_TRUE(accessibility().containsIgnoringCase(u"MainED\u0130TORView", u"editor"));
}

}  // namespace
}  // namespace lomaris::test
