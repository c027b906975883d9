#include "tests/linux/fake_desktop.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/roles.h"

#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using atspi::State;

constexpr std::uint32_t frame = 23;
constexpr std::uint32_t filler = 20;

const std::string window = "/w";
const std::string box = "/box";
const std::string bar = "/bar";
const std::string title = "/title";
const std::string popup = "/popup";
const std::string item = "/item";
const std::string secondItem = "/second";

class AccessibilityMenu : public FakeDesktop {
protected:
    void addRole(const std::string& path, std::uint32_t role, const std::vector<std::string>& children,
                 const std::vector<State>& states = {State::showing, State::sensitive}) {
        addObject(path, states, children);
        peer().answer(path, "Accessible.GetRole", unsignedInteger(role));
    }

    /// Adds a window with a menu bar in a box; `titleChildren` are the children of its only title.
    void addWindow(const std::vector<std::string>& titleChildren) {
        addObject(atspi::rootPath, {}, {window});
        addRole(window, frame, {box}, {State::active, State::showing});
        addRole(box, filler, {bar});
        addRole(bar, atspi_role::menuBar, {title});
        addRole(title, atspi_role::menu, titleChildren);
        peer().answer(title, "Get Accessible.Name", stringProperty("Edit"));
        addRole(item, atspi_role::menuItem, {}, {});
        addRole(secondItem, atspi_role::menuItem, {}, {});
    }

    AttributeAnswer menuBar() { return accessibility().copyAttribute(application(), attribute::menuBar); }

    std::vector<Element> childrenOf(const Element& element) {
        const AttributeAnswer answer = accessibility().copyAttribute(element, attribute::children);
        EXPECT_EQ(answer.error, AXError::success);
        const auto* const children = std::get_if<std::vector<Element>>(&answer.value);
        return children == nullptr ? std::vector<Element>() : *children;
    }

    std::vector<Element> titles() {
        const AttributeAnswer answer = menuBar();
        const auto* const element = std::get_if<Element>(&answer.value);
        return element == nullptr ? std::vector<Element>() : childrenOf(*element);
    }

    AttributeAnswer copyFrom(const Element& element, std::string_view attribute) {
        return accessibility().copyAttribute(element, attribute);
    }
};

TEST_F(AccessibilityMenu, HasAMenuBetweenATitleAndItsItems) {
    addWindow({item, secondItem});
    start();
    const std::vector<Element> found = titles();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(copyFrom(found.front(), attribute::role), successOf(Text(u"AXMenuBarItem")));
    EXPECT_EQ(copyFrom(found.front(), attribute::title), successOf(Text(u"Edit")));
    EXPECT_EQ(accessibility().processIdentifier(found.front()), processIdentifier());
    const std::vector<Element> menus = childrenOf(found.front());
    ASSERT_EQ(menus.size(), 1U);
    EXPECT_NE(menus.front(), found.front());
    EXPECT_EQ(copyFrom(menus.front(), attribute::role), successOf(Text(u"AXMenu")));
    EXPECT_EQ(childrenOf(menus.front()), (std::vector{object(item), object(secondItem)}));
}

TEST_F(AccessibilityMenu, UsesTheMenuOfTheToolkitIfThereIsOne) {
    addWindow({popup});
    addRole(popup, atspi_role::popupMenu, {item, secondItem}, {});
    start();
    const std::vector<Element> found = titles();
    ASSERT_EQ(found.size(), 1U);
    const std::vector<Element> menus = childrenOf(found.front());
    EXPECT_EQ(menus, std::vector{object(popup)});
    EXPECT_EQ(childrenOf(menus.front()), (std::vector{object(item), object(secondItem)}));
}

TEST_F(AccessibilityMenu, TreatsAnOnlySubmenuAsAnItem) {
    addWindow({popup});
    addRole(popup, atspi_role::menu, {item}, {});
    start();
    const std::vector<Element> menus = childrenOf(titles().at(0));
    ASSERT_EQ(menus.size(), 1U);
    EXPECT_EQ(childrenOf(menus.front()), std::vector{object(popup)});
}

TEST_F(AccessibilityMenu, HasNoMenuBelowAnEmptyTitle) {
    addWindow({});
    start();
    EXPECT_EQ(childrenOf(titles().at(0)), std::vector<Element>());
}

TEST_F(AccessibilityMenu, HasNoMenuBarIfItIsNotShowing) {
    addWindow({item});
    addRole(bar, atspi_role::menuBar, {title}, {State::visible});
    start();
    EXPECT_EQ(menuBar(), failureOf(AXError::noValue));
}

TEST_F(AccessibilityMenu, HasNoMenuBarWithoutAWindow) {
    addObject(atspi::rootPath, {}, {});
    start();
    EXPECT_EQ(menuBar(), failureOf(AXError::noValue));
}

TEST_F(AccessibilityMenu, DoesNotListObjectsWithTooManyChildren) {
    addWindow({item});
    peer().answer(box, "Get Accessible.ChildCount", integerProperty(1000000));
    start();
    EXPECT_EQ(menuBar(), failureOf(AXError::noValue));
    EXPECT_EQ(peer().callCount(box, "Accessible.GetChildren"), 0);
}

TEST_F(AccessibilityMenu, HasTheRolesOfItsParts) {
    addWindow({item, secondItem});
    start();
    const AttributeAnswer answer = menuBar();
    const auto* const found = std::get_if<Element>(&answer.value);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(copyFrom(*found, attribute::role), successOf(Text(u"AXMenuBar")));
    const Element barItem = childrenOf(*found).at(0);
    EXPECT_EQ(copyFrom(barItem, attribute::role), successOf(Text(u"AXMenuBarItem")));
    const Element menu = childrenOf(barItem).at(0);
    EXPECT_EQ(copyFrom(menu, attribute::role), successOf(Text(u"AXMenu")));
    EXPECT_EQ(copyFrom(menu, attribute::title), successOf(Text(u"Edit")));
}

TEST_F(AccessibilityMenu, FailsIfItsObjectFails) {
    addWindow({item});
    int roleCalls = 0;
    // During the search, its role is that of a menu bar.
    peer().answerWith(bar, "Accessible.GetRole", [&roleCalls] {
        return ++roleCalls == 1 ? unsignedInteger(atspi_role::menuBar) : string("no number");
    });
    peer().answer(bar, "Accessible.GetChildren", strings({"a"}));
    start();
    const AttributeAnswer answer = menuBar();
    const auto* const found = std::get_if<Element>(&answer.value);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(copyFrom(*found, attribute::role), failureOf(AXError::failure));
    EXPECT_EQ(copyFrom(*found, attribute::children), failureOf(AXError::failure));
}

TEST_F(AccessibilityMenu, SkipsNullTitles) {
    addWindow({item});
    peer().answer(bar, "Accessible.GetChildren",
                  references({{peer().name(), atspi::nullPath}, {peer().name(), title}}));
    start();
    EXPECT_EQ(titles().size(), 1U);
}

TEST_F(AccessibilityMenu, IsSearchedInTheTopLevelsOfAWindow) {
    for (const auto& [depth, isFound] : {std::pair(4, true), std::pair(5, false)}) {
        TearDown();
        SetUp();
        addObject(atspi::rootPath, {}, {window});
        addRole(window, frame, {"/1"}, {State::active, State::showing});
        for (int level = 1; level < depth; ++level) {
            addRole("/" + std::to_string(level), filler, {"/" + std::to_string(level + 1)});
        }
        addRole("/" + std::to_string(depth), atspi_role::menuBar, {});
        start();
        EXPECT_EQ(menuBar().error, isFound ? AXError::success : AXError::noValue) << depth;
    }
}

TEST_F(AccessibilityMenu, IsSearchedAmongALimitedNumberOfObjects) {
    for (const auto& [count, isFound] : {std::pair(100, true), std::pair(101, false)}) {
        TearDown();
        SetUp();
        addObject(atspi::rootPath, {}, {window});
        std::vector<std::string> outer{box};
        outer.resize(200, "/outer");
        addRole("/outer", filler, {}, {});
        addRole(window, frame, outer, {State::active, State::showing});
        std::vector<std::string> inner(static_cast<std::size_t>(count), "/outer");
        inner.back() = bar;
        addRole(box, filler, inner);
        addRole(bar, atspi_role::menuBar, {});
        start();
        EXPECT_EQ(menuBar().error, isFound ? AXError::success : AXError::noValue) << count;
    }
}

TEST_F(AccessibilityMenu, ListsAsManyChildrenAsItExamines) {
    for (const auto& [count, isFound] : {std::pair(300, true), std::pair(301, false)}) {
        TearDown();
        SetUp();
        addObject(atspi::rootPath, {}, {window});
        std::vector<std::string> children(static_cast<std::size_t>(count), "/outer");
        children.front() = bar;
        addRole("/outer", filler, {}, {});
        addRole(window, frame, children, {State::active, State::showing});
        addRole(bar, atspi_role::menuBar, {});
        start();
        EXPECT_EQ(menuBar().error, isFound ? AXError::success : AXError::noValue) << count;
    }
}

TEST_F(AccessibilityMenu, CannotCompleteIfTheApplicationHangs) {
    addWindow({item});
    peer().hang(box, "Get Accessible.ChildCount");
    start();
    EXPECT_EQ(menuBar(), failureOf(AXError::cannotComplete));
}

TEST_F(AccessibilityMenu, CannotCompleteIfAnyCallHangs) {
    for (const auto& [path, call] : {std::pair(box, "Accessible.GetChildren"), std::pair(bar, "Accessible.GetRole"),
                                     std::pair(bar, "Accessible.GetState")}) {
        TearDown();
        SetUp();
        addWindow({item});
        peer().hang(path, call);
        start();
        EXPECT_EQ(menuBar(), failureOf(AXError::cannotComplete)) << call;
    }
}

TEST_F(AccessibilityMenu, ReportsTheShortcutOfAnItem) {
    addWindow({item, secondItem});
    peer().answer(item, "Action.GetKeyBinding", string("c;<Alt>e:c;<Primary><Shift>c"));
    peer().answer(secondItem, "Action.GetKeyBinding", string(""));
    peer().answer(title, "Action.GetKeyBinding", integer(3));
    start();
    EXPECT_EQ(copy(item, attribute::menuItemCommandCharacter), successOf(Text(u"c")));
    EXPECT_EQ(copy(item, attribute::menuItemCommandModifiers), successOf(std::int64_t{1}));
    EXPECT_EQ(copy(secondItem, attribute::menuItemCommandCharacter), failureOf(AXError::noValue));
    EXPECT_EQ(copy(secondItem, attribute::menuItemCommandModifiers), failureOf(AXError::noValue));
    EXPECT_EQ(copy(title, attribute::menuItemCommandCharacter), failureOf(AXError::failure));
    EXPECT_EQ(copy(box, attribute::menuItemCommandCharacter), failureOf(AXError::attributeUnsupported));
}

TEST_F(AccessibilityMenu, ReportsWhetherAPressWasAccepted) {
    addWindow({item, secondItem});
    peer().answer(item, "Action.DoAction", boolean(true));
    peer().answer(secondItem, "Action.DoAction", boolean(false));
    peer().answer(title, "Action.DoAction", integer(1));
    start();
    EXPECT_EQ(accessibility().performAction(object(item), action::press), AXError::success);
    EXPECT_EQ(accessibility().performAction(object(secondItem), action::press), AXError::cannotComplete);
    EXPECT_EQ(accessibility().performAction(object(title), action::press), AXError::failure);
    EXPECT_EQ(accessibility().performAction(object(box), action::press), AXError::actionUnsupported);
}

TEST_F(AccessibilityMenu, RaisesNothingWithoutARaiser) {
    addWindow({item});
    start();
    EXPECT_EQ(accessibility().performAction(object(window), action::raise), AXError::actionUnsupported);
    EXPECT_EQ(accessibility().setAttribute(object(window), attribute::main, true), AXError::attributeUnsupported);
}

}  // namespace
}  // namespace lomaris::test
