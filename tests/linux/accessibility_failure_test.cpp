#include "tests/linux/fake_desktop.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/atspi_element.h"

#include <array>
#include <climits>

namespace lomaris::test {
namespace {

using atspi::State;

constexpr const char* path = "/org/a11y/atspi/accessible/7";
constexpr const char* unknownObject = "org.freedesktop.DBus.Error.UnknownObject";

class AccessibilityFailure : public FakeDesktop {};

TEST_F(AccessibilityFailure, CallsAHungApplicationOnlyOnce) {
    peer().hang(path, "Accessible.GetRole");
    addObject(path, {});
    start();
    EXPECT_EQ(copy(path, attribute::role), failureOf(AXError::cannotComplete));
    EXPECT_EQ(copy(path, attribute::role), failureOf(AXError::cannotComplete));
    EXPECT_EQ(copy(path, attribute::focused), failureOf(AXError::cannotComplete));
    EXPECT_EQ(copyFocused(), failureOf(AXError::cannotComplete));
    EXPECT_EQ(accessibility().performAction(object(path), action::press), AXError::cannotComplete);
    EXPECT_EQ(peer().callCount(), 1);
}

TEST_F(AccessibilityFailure, DoesNotAffectOtherApplications) {
    peer().hang(path, "Accessible.GetRole");
    desktop().answer(path, "Accessible.GetRole", unsignedInteger(43));
    start();
    const std::array elements{object(path), makeElement(ObjectReference{desktop().name(), path})};
    const std::array attributes{attribute::role};
    const std::vector<std::vector<AttributeAnswer>> expected{{failureOf(AXError::cannotComplete)},
                                                             {successOf(Text(u"AXButton"))}};
    EXPECT_EQ(accessibility().copyAttributes(elements, attributes), expected);
    EXPECT_EQ(accessibility().copyAttributes(elements, attributes), expected);
}

TEST_F(AccessibilityFailure, IsInvalidElementIfTheApplicationExits) {
    addObject(path, {});
    peer().leave(path, "Accessible.GetRole");
    start();
    EXPECT_EQ(copy(path, attribute::role), failureOf(AXError::invalidUIElement));
    EXPECT_EQ(copy(path, attribute::focused), failureOf(AXError::invalidUIElement));
}

TEST_F(AccessibilityFailure, IsInvalidElementIfTheNameHasNoOwner) {
    start();
    const Element stranger = makeElement(ObjectReference{":1.999", path});
    EXPECT_EQ(accessibility().copyAttribute(stranger, attribute::role), failureOf(AXError::invalidUIElement));
    EXPECT_EQ(accessibility().processIdentifier(stranger), std::nullopt);
}

TEST_F(AccessibilityFailure, IsInvalidElementIfTheNameOrPathIsNotValid) {
    start();
    for (const auto& [name, where] : std::vector<std::pair<std::string, std::string>>{
             {"not a name", path}, {"", path}, {peer().name(), "no path"}, {peer().name(), ""}}) {
        const Element element = makeElement(ObjectReference{name, where});
        EXPECT_EQ(accessibility().copyAttribute(element, attribute::role), failureOf(AXError::invalidUIElement))
            << name << " " << where;
    }
}

TEST_F(AccessibilityFailure, DistinguishesMissingObjectsAndAttributes) {
    const std::string gone = std::string(path) + "0";
    const std::string lacking = std::string(path) + "1";
    const std::string defunct = std::string(path) + "2";
    peer().answerError(gone, "Accessible.GetState", unknownObject);
    addObject(lacking, {State::enabled});
    addObject(defunct, {State::defunct});
    for (const std::string& each : {gone, lacking, defunct}) {
        peer().answerError(each, "Text.GetNSelections", unknownObject);
        peer().answerError(each, "Get Accessible.AccessibleId", "org.freedesktop.DBus.Error.UnknownInterface");
    }
    start();
    for (const auto& attribute : {attribute::selectedText, attribute::identifier}) {
        EXPECT_EQ(copy(gone, attribute), failureOf(AXError::invalidUIElement)) << attribute;
        EXPECT_EQ(copy(lacking, attribute), failureOf(AXError::attributeUnsupported)) << attribute;
        EXPECT_EQ(copy(defunct, attribute), failureOf(AXError::invalidUIElement)) << attribute;
    }
    EXPECT_EQ(copy(gone, attribute::enabled), failureOf(AXError::invalidUIElement));
    EXPECT_EQ(copy(lacking, attribute::enabled), successOf(true));
    EXPECT_EQ(copy(defunct, attribute::enabled), failureOf(AXError::invalidUIElement));
}

TEST_F(AccessibilityFailure, ReportsRepliesOfAnotherType) {
    struct Case {
        std::string_view attribute;
        const char* call;
        Values values;
    };
    const std::vector<Case> cases{
        {attribute::role, "Accessible.GetRole", string("button")},
        {attribute::role, "Accessible.GetRole", integer(43)},
        {attribute::role, "Accessible.GetRole", nothing()},
        {attribute::title, "Get Accessible.Name", integerProperty(1)},
        {attribute::title, "Get Accessible.Name", string("bare")},
        {attribute::focused, "Accessible.GetState", integer(1)},
        {attribute::children, "Get Accessible.ChildCount", stringProperty("1")},
        {attribute::children, "Get Accessible.ChildCount", integerProperty(-1)},
        {attribute::children, "Get Accessible.ChildCount", integerProperty(INT_MAX)},
        {attribute::children, "Accessible.GetChildren", strings({"a"})},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        addObject(path + std::to_string(i), {}, {"/child"});
        peer().answer(path + std::to_string(i), cases[i].call, cases[i].values);
    }
    start();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(copy(path + std::to_string(i), cases[i].attribute), failureOf(AXError::failure))
            << "case " << i << ": " << cases[i].call;
    }
}

TEST_F(AccessibilityFailure, LimitsTheNumberOfChildren) {
    addObject(path, {}, {"/child"});
    peer().answer(path, "Accessible.GetChildren",
                  references(std::vector<std::pair<std::string, std::string>>(10001, {peer().name(), "/child"})));
    start();
    EXPECT_EQ(copy(path, attribute::children), failureOf(AXError::failure));
}

TEST_F(AccessibilityFailure, SkipsNullChildren) {
    addObject(path, {}, {"/child"});
    peer().answer(path, "Accessible.GetChildren",
                  references({{peer().name(), atspi::nullPath}, {"", "/child"}, {peer().name(), "/other"}}));
    start();
    EXPECT_EQ(copy(path, attribute::children), successOf(std::vector<Element>{object("/child"), object("/other")}));
}

TEST_F(AccessibilityFailure, IsApiDisabledIfTheProcessIsNotOnTheBus) {
    start();
    for (const ProcessIdentifier process : {0, -1, 1, INT_MAX, INT_MIN}) {
        const Element element = accessibility().applicationElement(process);
        EXPECT_EQ(accessibility().copyAttribute(element, attribute::role), failureOf(AXError::apiDisabled)) << process;
        EXPECT_EQ(accessibility().isAttributeSettable(element, attribute::selectedText),
                  (SettableAnswer{AXError::apiDisabled, false}))
            << process;
        EXPECT_EQ(accessibility().processIdentifier(element), process);
    }
}

TEST_F(AccessibilityFailure, CannotCompleteIfTheRegistryHangs) {
    desktop().hang(atspi::rootPath, "Accessible.GetChildren");
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::cannotComplete));
    EXPECT_EQ(copyFocused(), failureOf(AXError::cannotComplete));
    EXPECT_EQ(desktop().callCount(atspi::rootPath, "Accessible.GetChildren"), 1);
}

TEST_F(AccessibilityFailure, IsTheSameInBatchesAndSingleCopies) {
    const std::string other = std::string(path) + "1";
    const std::string gone = std::string(path) + "2";
    addObject(path, {State::editable, State::focusable, State::focused, State::multiLine}, {other});
    addText(path, "hello", 5, {{0, 2}});
    peer().answer(path, "Accessible.GetRole", unsignedInteger(61));
    peer().answer(path, "Get Accessible.Name", stringProperty("Text"));
    peer().answer(path, "Get Accessible.AccessibleId", stringProperty("editor"));
    addObject(other, {});
    peer().answer(other, "Accessible.GetRole", unsignedInteger(40));
    peer().answer(other, "Get Accessible.AccessibleId", stringProperty(""));
    peer().answerError(gone, "Accessible.GetState", unknownObject);
    peer().answerError(gone, "Accessible.GetRole", unknownObject);
    peer().answer(atspi::rootPath, "Accessible.GetRole", unsignedInteger(75));
    peer().answer(atspi::rootPath, "Accessible.GetChildren", references({{peer().name(), "/window"}}));
    addObject("/window", {State::active}, {path});
    workspace().front = RunningApplication{processIdentifier(), std::nullopt, std::nullopt};
    start();
    const std::vector<Element> elements{object(path),
                                        object(other),
                                        object(gone),
                                        application(),
                                        accessibility().systemWideElement(),
                                        accessibility().applicationElement(1)};
    const std::vector<std::string_view> attributes{
        attribute::children,
        attribute::enabled,
        attribute::focused,
        attribute::role,
        attribute::subrole,
        attribute::identifier,
        attribute::title,
        attribute::selectedText,
        attribute::selectedTextRange,
        attribute::value,
        attribute::windows,
        attribute::focusedUIElement,
        attribute::menuBar,
        "AXNonsense",
        "",
    };
    std::vector<std::vector<AttributeAnswer>> expected;
    for (const Element& element : elements) {
        auto& row = expected.emplace_back();
        for (const std::string_view attribute : attributes) {
            row.push_back(accessibility().copyAttribute(element, attribute));
        }
    }
    EXPECT_EQ(accessibility().copyAttributes(elements, attributes), expected);
    // The compared results are not all failures.
    EXPECT_EQ(expected[0][3], successOf(Text(u"AXTextArea")));
    EXPECT_EQ(expected[0][5], successOf(Text(u"editor")));
    EXPECT_EQ(expected[0][7], successOf(Text(u"he")));
    EXPECT_EQ(expected[1][4], successOf(Text(u"AXSecureTextField")));
    EXPECT_EQ(expected[1][5], failureOf(AXError::noValue));
    EXPECT_EQ(expected[3][11], successOf(object(path)));
    EXPECT_EQ(expected[4][11], successOf(object(path)));
}

}  // namespace
}  // namespace lomaris::test
