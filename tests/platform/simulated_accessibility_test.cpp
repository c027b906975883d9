#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/vectors.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

const AttributeAnswer unsupported = answer(AXError::attributeUnsupported);
const AttributeAnswer invalid = answer(AXError::invalidUIElement);

/// A desktop with one application, of which one element is scripted.
struct OneElement {
    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedElement field = notes.addElement();
    Accessibility& service = desktop.accessibility();

    AttributeAnswer read(std::string_view attribute) { return service.copyAttribute(field.element(), attribute); }
};

TEST(SimulatedAccessibility, TrustIsScripted) {
    struct Case {
        bool trusted;
        std::optional<bool> promptAnswer;
        bool expected;
        bool expectedWithPrompt;
    };
    for (const Case& each : {Case{true, std::nullopt, true, true}, Case{false, std::nullopt, false, false},
                             Case{false, true, false, true}, Case{true, false, true, false}}) {
        SimulatedDesktop desktop;
        desktop.setTrusted(each.trusted);
        if (each.promptAnswer) {
            desktop.setPromptAnswer(*each.promptAnswer);
        }
        EXPECT_EQ(desktop.accessibility().isProcessTrusted(TrustPrompt::none), each.expected);
        EXPECT_EQ(desktop.accessibility().isProcessTrusted(TrustPrompt::ask), each.expectedWithPrompt);
    }
}

TEST(SimulatedAccessibility, WithoutAScriptNothingIsSupported) {
    OneElement world;
    const Element element = world.field.element();
    EXPECT_EQ(world.read(attribute::role), unsupported);
    EXPECT_EQ(world.service.isAttributeSettable(element, attribute::role),
              (SettableAnswer{AXError::attributeUnsupported, false}));
    EXPECT_EQ(world.service.setAttribute(element, attribute::main, true), AXError::attributeUnsupported);
    EXPECT_EQ(world.service.performAction(element, action::raise), AXError::actionUnsupported);
    EXPECT_EQ(world.service.processIdentifier(element), 812);
}

TEST(SimulatedAccessibility, ReturnsEveryKindOfScriptedValue) {
    OneElement world;
    const Element element = world.field.element();
    const std::vector<AttributeValue> values{NullValue{},
                                             Text(u"words"),
                                             true,
                                             std::int64_t{-3},
                                             OtherNumber{0.5},
                                             element,
                                             std::vector<Element>{},
                                             std::vector<Element>{element},
                                             MixedArray{},
                                             TextRange{3, 4},
                                             OtherBoxedValue{},
                                             OtherValue{}};
    for (const AttributeValue& value : values) {
        world.field.answers(attribute::value, value);
        EXPECT_EQ(world.read(attribute::value), answer(value)) << "kind " << value.index();
    }
}

TEST(SimulatedAccessibility, AnErrorHasNoValue) {
    OneElement world;
    world.field.answers(attribute::value, AttributeAnswer{AXError::noValue, Text(u"ignored")});
    EXPECT_EQ(world.read(attribute::value), answer(AXError::noValue));
}

TEST(SimulatedAccessibility, RepliesInTurnCountSingleAndBatchedReads) {
    OneElement world;
    const AttributeAnswer first = answer(AXError::cannotComplete);
    const AttributeAnswer second = answer(Text(u"two"));
    const AttributeAnswer third = answer(Text(u"three"));
    world.field.answersInTurn(attribute::value, {first, second, third});
    const std::array<Element, 2> twice{world.field.element(), world.field.element()};
    constexpr std::array<std::string_view, 1> names{attribute::value};
    EXPECT_EQ(world.read(attribute::value), first);
    EXPECT_EQ(world.service.copyAttributes(twice, names),
              (std::vector<std::vector<AttributeAnswer>>{{second}, {third}}));
    EXPECT_EQ(world.read(attribute::value), third);
    world.field.answersInTurn(attribute::value, {});
    EXPECT_EQ(world.read(attribute::value), unsupported);
}

TEST(SimulatedAccessibility, AnElementCopyCountsAsAReadAndKeepsTheErrorCode) {
    OneElement world;
    world.field.answersInTurn(attribute::focusedUIElement,
                              {answer(AXError::cannotComplete), answer(NullValue{}), answer(world.field.element())});
    const auto copy = [&] {
        return world.service.copyElementAttribute(world.field.element(), attribute::focusedUIElement);
    };
    const ElementAnswer first = copy();
    EXPECT_EQ(first.error, AXError::cannotComplete);
    EXPECT_FALSE(first.element.has_value());
    const ElementAnswer second = copy();
    EXPECT_EQ(second.error, AXError::success);
    EXPECT_FALSE(second.element.has_value());
    const ElementAnswer third = copy();
    EXPECT_EQ(third.error, AXError::success);
    EXPECT_EQ(third.element, world.field.element());
}

TEST(SimulatedAccessibility, AValueReadAsAnElementReturnsIllegalArgument) {
    OneElement world;
    world.field.answers(attribute::focusedUIElement, Text(u"no element"));
    const ElementAnswer taken = world.service.copyElementAttribute(world.field.element(), attribute::focusedUIElement);
    ASSERT_EQ(taken.error, AXError::success);
    ASSERT_TRUE(taken.element.has_value());
    const Element& element = *taken.element;
    EXPECT_EQ(world.service.copyAttribute(element, attribute::role), answer(AXError::illegalArgument));
    EXPECT_EQ(world.service.setAttribute(element, attribute::main, true), AXError::illegalArgument);
    EXPECT_EQ(world.service.isAttributeSettable(element, attribute::main),
              (SettableAnswer{AXError::illegalArgument, false}));
    EXPECT_EQ(world.service.performAction(element, action::press), AXError::illegalArgument);
    EXPECT_EQ(world.service.processIdentifier(element), std::nullopt);
    EXPECT_EQ(element, Element(element));
    EXPECT_FALSE(element == world.field.element());
}

TEST(SimulatedAccessibility, SettingFollowsItsScript) {
    OneElement world;
    const Element element = world.field.element();
    world.field.answers(attribute::selectedText, Text(u"fox"));
    EXPECT_EQ(world.service.isAttributeSettable(element, attribute::selectedText),
              (SettableAnswer{AXError::success, false}));
    EXPECT_EQ(world.service.setAttribute(element, attribute::selectedText, Text(u"dog")),
              AXError::attributeUnsupported);

    world.field.answersSettable(attribute::selectedText, {AXError::cannotComplete, false});
    EXPECT_EQ(world.service.setAttribute(element, attribute::selectedText, Text(u"dog")), AXError::cannotComplete);
    EXPECT_EQ(world.read(attribute::selectedText), answer(Text(u"fox")));

    world.field.answersSettable(attribute::selectedText, {AXError::success, true});
    EXPECT_EQ(world.service.setAttribute(element, attribute::selectedText, Text(u"dog")), AXError::success);
    EXPECT_EQ(world.read(attribute::selectedText), answer(Text(u"dog")));

    world.field.answersSet(attribute::selectedText, AXError::success);
    EXPECT_EQ(world.service.setAttribute(element, attribute::selectedText, Text(u"cat")), AXError::success);
    EXPECT_EQ(world.read(attribute::selectedText), answer(Text(u"dog")));

    world.field.answersSet(attribute::selectedText, AXError::failure);
    EXPECT_EQ(world.service.setAttribute(element, attribute::selectedText, Text(u"cat")), AXError::failure);
}

TEST(SimulatedAccessibility, ActionsAndTheProcessIdentifierFollowTheirScript) {
    OneElement world;
    world.field.answersAction(action::raise, AXError::success).answersAction(action::press, AXError::failure);
    EXPECT_EQ(world.service.performAction(world.field.element(), action::raise), AXError::success);
    EXPECT_EQ(world.service.performAction(world.field.element(), action::press), AXError::failure);
    world.field.answersAction(action::press, AXError::success);
    EXPECT_EQ(world.service.performAction(world.field.element(), action::press), AXError::success);
    world.field.processIdentifierFails();
    EXPECT_EQ(world.service.processIdentifier(world.field.element()), std::nullopt);
}

TEST(SimulatedAccessibility, ElementsOfAProcessThatQuitOrNeverRanAreInvalid) {
    OneElement world;
    world.field.answers(attribute::role, u"AXGroup");
    world.notes.element().answers(attribute::role, u"AXApplication");
    const Element field = world.field.element();
    const Element root = world.service.applicationElement(812);
    world.desktop.quit(812);
    for (const Element& element : {field, root, world.service.applicationElement(4711)}) {
        EXPECT_EQ(world.service.copyAttribute(element, attribute::role), invalid);
        EXPECT_EQ(world.service.copyElementAttribute(element, attribute::role).error, AXError::invalidUIElement);
        EXPECT_EQ(world.service.setAttribute(element, attribute::main, true), AXError::invalidUIElement);
        EXPECT_EQ(world.service.isAttributeSettable(element, attribute::main),
                  (SettableAnswer{AXError::invalidUIElement, false}));
        EXPECT_EQ(world.service.performAction(element, action::raise), AXError::invalidUIElement);
        EXPECT_EQ(world.service.processIdentifier(element), std::nullopt);
    }
}

TEST(SimulatedAccessibility, AnApplicationThatStartsAgainHasNewElements) {
    OneElement world;
    const Element oldField = world.field.element();
    const Element root = world.service.applicationElement(812);
    world.desktop.quit(812);
    SimulatedApplication again = world.desktop.addApplication(812, std::nullopt, std::nullopt);
    SimulatedElement newField = again.addElement().answers(attribute::role, u"AXGroup");
    again.element().answers(attribute::role, u"AXApplication");
    EXPECT_EQ(world.service.copyAttribute(oldField, attribute::role), invalid);
    EXPECT_EQ(world.service.copyAttribute(newField.element(), attribute::role), answer(Text(u"AXGroup")));
    EXPECT_EQ(world.service.copyAttribute(root, attribute::role), answer(Text(u"AXApplication")));
    EXPECT_FALSE(oldField == newField.element());
    EXPECT_EQ(root, again.element().element());
}

TEST(SimulatedTextArea, WritesOverTheSelectionAndMovesTheInsertionPoint) {
    OneElement world;
    SimulatedTextElement text = world.notes.addTextElement(u"The quick brown fox", {4, 5});
    Accessibility& service = world.service;
    ASSERT_EQ(service.setAttribute(text.element(), attribute::selectedText, Text(u"slow")), AXError::success);
    EXPECT_EQ(text.text(), u"The slow brown fox");
    EXPECT_EQ(text.selection(), (TextRange{8, 0}));
    ASSERT_EQ(service.setAttribute(text.element(), attribute::selectedTextRange, TextRange{9, 5}), AXError::success);
    EXPECT_EQ(service.copyAttribute(text.element(), attribute::selectedText), answer(Text(u"brown")));
    ASSERT_EQ(service.setAttribute(text.element(), attribute::value, Text(u"new")), AXError::success);
    EXPECT_EQ(text.text(), u"new");
    EXPECT_EQ(text.selection(), (TextRange{3, 0}));
}

TEST(SimulatedTextArea, RefusesRangesOutsideTheTextAndOtherTypes) {
    OneElement world;
    SimulatedTextElement text = world.notes.addTextElement(u"fox", {0, 3});
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    for (const TextRange range : {TextRange{-1, 1}, TextRange{0, -1}, TextRange{4, 0}, TextRange{2, 2},
                                  TextRange{notFoundLocation, 0}, TextRange{1, largest}}) {
        EXPECT_EQ(world.service.setAttribute(text.element(), attribute::selectedTextRange, range),
                  AXError::illegalArgument)
            << range.location << ", " << range.length;
    }
    EXPECT_EQ(world.service.setAttribute(text.element(), attribute::selectedText, true), AXError::illegalArgument);
    EXPECT_EQ(world.service.setAttribute(text.element(), attribute::selectedTextRange, Text(u"x")),
              AXError::illegalArgument);
    EXPECT_EQ(text.text(), u"fox");
    EXPECT_EQ(text.selection(), (TextRange{0, 3}));
}

TEST(SimulatedTextArea, AScriptReplacesItsBehavior) {
    OneElement world;
    SimulatedTextElement text = world.notes.addTextElement(u"fox", {0, 3});
    text.answers(attribute::selectedText, AXError::cannotComplete);
    EXPECT_EQ(world.service.copyAttribute(text.element(), attribute::selectedText), answer(AXError::cannotComplete));
    EXPECT_EQ(world.service.setAttribute(text.element(), attribute::selectedText, Text(u"dog")), AXError::success);
    EXPECT_EQ(text.text(), u"dog");
    text.answersSettable(attribute::selectedText, {AXError::success, false});
    EXPECT_EQ(world.service.setAttribute(text.element(), attribute::selectedText, Text(u"cat")),
              AXError::attributeUnsupported);
    text.answersSettable(attribute::selectedText, {AXError::success, true});
    text.answersSet(attribute::selectedText, AXError::success);
    EXPECT_EQ(world.service.setAttribute(text.element(), attribute::selectedText, Text(u"cat")), AXError::success);
    EXPECT_EQ(text.text(), u"dog");
}

TEST(SimulatedLatency, PassesBeforeTheApplicationReplies) {
    OneElement world;
    world.field.answers(attribute::value, Text(u"before"));
    world.desktop.setLatency(milliseconds(3));
    world.desktop.at(milliseconds(2), [&] { world.field.answers(attribute::value, Text(u"after")); });
    EXPECT_EQ(world.read(attribute::value), answer(Text(u"after")));
    EXPECT_EQ(world.desktop.now(), milliseconds(3));
}

TEST(SimulatedLatency, PassesOncePerCallToAnApplication) {
    OneElement world;
    world.desktop.setLatency(milliseconds(1));
    const Element element = world.field.element();
    const std::vector<Element> elements(10, element);
    constexpr std::array<std::string_view, 2> names{attribute::value, attribute::role};
    Accessibility& service = world.service;
    const auto timeOf = [&](const auto& call) {
        const Moment start = world.desktop.now();
        static_cast<void>(call());
        return world.desktop.now() - start;
    };
    EXPECT_EQ(timeOf([&] { return service.copyAttribute(element, attribute::role); }), milliseconds(1));
    EXPECT_EQ(timeOf([&] { return service.copyElementAttribute(element, attribute::role); }), milliseconds(1));
    EXPECT_EQ(timeOf([&] { return service.copyAttributes(elements, names); }), milliseconds(1));
    EXPECT_EQ(timeOf([&] { return service.setAttribute(element, attribute::main, true); }), milliseconds(1));
    EXPECT_EQ(timeOf([&] { return service.isAttributeSettable(element, attribute::main); }), milliseconds(1));
    EXPECT_EQ(timeOf([&] { return service.areAttributesSettable(elements, attribute::main); }), milliseconds(1));
    EXPECT_EQ(timeOf([&] { return service.performAction(element, action::raise); }), milliseconds(1));
    EXPECT_EQ(timeOf([&] { return service.processIdentifier(element); }), milliseconds(0));
    EXPECT_EQ(timeOf([&] { return service.isProcessTrusted(TrustPrompt::none); }), milliseconds(0));
    EXPECT_EQ(timeOf([&] { return service.applicationElement(812); }), milliseconds(0));
}

TEST(SimulatedLatency, OfOneCallReplacesTheGeneralOne) {
    OneElement world;
    world.desktop.setLatency(milliseconds(1));
    world.desktop.setLatencyOf("performAction", milliseconds(5));
    world.desktop.setLatencyOf("setAttribute", milliseconds(0));
    static_cast<void>(world.service.performAction(world.field.element(), action::raise));
    EXPECT_EQ(world.desktop.now(), milliseconds(5));
    static_cast<void>(world.service.setAttribute(world.field.element(), attribute::main, true));
    EXPECT_EQ(world.desktop.now(), milliseconds(5));
    static_cast<void>(world.read(attribute::role));
    EXPECT_EQ(world.desktop.now(), milliseconds(6));
}

TEST(SimulatedJournal, RecordsAccessibilityCallsArgumentsAndResults) {
    OneElement world;
    Accessibility& service = world.service;
    const Element field = world.field.element();
    world.field.answers(attribute::selectedText, Text(u"a \"quoted\"\nline \u00e9"));
    world.field.answers(attribute::selectedTextRange, TextRange{10, 9});
    world.notes.element().answers(attribute::focusedUIElement, field);
    world.field.answers(attribute::children, std::vector<Element>{field, service.systemWideElement()});
    const std::array<Element, 2> both{field, service.applicationElement(812)};
    constexpr std::array<std::string_view, 2> names{attribute::selectedTextRange, attribute::children};
    static_cast<void>(service.isProcessTrusted(TrustPrompt::ask));
    static_cast<void>(service.copyAttribute(field, attribute::selectedText));
    static_cast<void>(service.copyElementAttribute(both[1], attribute::focusedUIElement));
    static_cast<void>(service.copyElementAttribute(field, attribute::selectedText));
    static_cast<void>(service.copyAttributes(both, names));
    static_cast<void>(service.setAttribute(field, attribute::main, true));
    static_cast<void>(service.isAttributeSettable(field, attribute::selectedText));
    static_cast<void>(service.areAttributesSettable(both, attribute::selectedText));
    static_cast<void>(service.performAction(field, action::raise));
    static_cast<void>(service.processIdentifier(field));
    static_cast<void>(service.containsIgnoringCase(u"Editor", u"editor"));
    EXPECT_EQ(world.desktop.journal(),
              (Lines{
                  "0.000000000 systemWideElement()",
                  "0.000000000 applicationElement(812)",
                  "0.000000000 isProcessTrusted(ask) -> true",
                  "0.000000000 copyAttribute(812/1, AXSelectedText) -> \"a \\\"quoted\\\"\\nline \xc3\xa9\"",
                  "0.000000000 copyElementAttribute(812, AXFocusedUIElement) -> 812/1",
                  "0.000000000 copyElementAttribute(812/1, AXSelectedText) -> no element",
                  "0.000000000 copyAttributes([812/1, 812], [AXSelectedTextRange, AXChildren]) -> "
                  "[[{10, 9}, [812/1, system-wide]], [error -25205, error -25205]]",
                  "0.000000000 setAttribute(812/1, AXMain, true) -> error -25205",
                  "0.000000000 isAttributeSettable(812/1, AXSelectedText) -> false",
                  "0.000000000 areAttributesSettable([812/1, 812], AXSelectedText) -> [false, error -25205]",
                  "0.000000000 performAction(812/1, AXRaise) -> error -25206",
                  "0.000000000 processIdentifier(812/1) -> 812",
                  "0.000000000 containsIgnoringCase(\"Editor\", \"editor\") -> true",
              }));
}

TEST(SimulatedAccessibility, ComparesUnderTheLanguageOfTheUser) {
    SimulatedDesktop desktop;
    desktop.setLanguage("tr");
    EXPECT_FALSE(desktop.accessibility().containsIgnoringCase(u"EDITOR", u"editor"));
    EXPECT_TRUE(desktop.accessibility().containsIgnoringCase(u"ED\u0130TOR", u"editor"));
    desktop.setLanguage("de");
    EXPECT_TRUE(desktop.accessibility().containsIgnoringCase(u"EDITOR", u"editor"));
    EXPECT_FALSE(desktop.accessibility().containsIgnoringCase(u"ED\u0130TOR", u"editor"));
}

TEST(SimulatedAccessibility, ComparesAsInEveryReferenceCase) {
    SimulatedDesktop desktop;
    for (const Vector& vector : readVectors("editor-identifier")) {
        EXPECT_EQ(desktop.accessibility().containsIgnoringCase(textOf(vector.value.at("text")), u"editor"),
                  vector.value.at("expected").at("contains").get<bool>())
            << "line " << vector.line;
    }
}

TEST(SimulatedWorkspace, FollowsTheScript) {
    SimulatedDesktop desktop;
    EXPECT_EQ(desktop.workspace().frontmostApplication(), std::nullopt);
    desktop.addApplication(812, u"com.example.notes", std::nullopt);
    EXPECT_EQ(desktop.workspace().frontmostApplication(), std::nullopt);
    desktop.bringToFront(812);
    static_cast<void>(desktop.workspace().frontmostApplication());
    desktop.leaveNothingInFront();
    EXPECT_EQ(desktop.workspace().frontmostApplication(), std::nullopt);
    desktop.bringToFront(812);
    desktop.quit(812);
    EXPECT_EQ(desktop.workspace().frontmostApplication(), std::nullopt);
    EXPECT_EQ(desktop.workspace().runningApplication(812), std::nullopt);
    EXPECT_EQ(desktop.journal()[2], "0.000000000 frontmostApplication() -> 812 com.example.notes (no name)");
    EXPECT_EQ(desktop.journal()[5], "0.000000000 runningApplication(812) -> nothing");
}

}  // namespace
}  // namespace lomaris::test
