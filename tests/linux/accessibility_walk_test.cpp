#include "tests/linux/fake_desktop.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/roles.h"

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using atspi::State;
using atspi::States;

constexpr std::uint32_t frame = 23;
constexpr std::uint32_t passwordText = 40;
constexpr std::uint32_t pushButton = 43;

constexpr std::array walkAttributes{
    attribute::children, attribute::enabled, attribute::focused,      attribute::identifier,
    attribute::main,     attribute::role,    attribute::selectedText, attribute::selectedTextRange,
    attribute::subrole,  attribute::title,   attribute::value,
};

/// A desktop whose application returns the same data for an object as in its list.
class AccessibilityWalk : public FakeDesktop {
protected:
    /// Adds an object of the application; the first one is the window.
    void add(const std::string& path, std::uint32_t role, const std::vector<State>& states,
             const std::vector<std::string>& interfaces = {}, const std::vector<std::string>& children = {},
             const std::string& parent = "/window") {
        addObject(path, states, children);
        peer().answer(path, "Accessible.GetRole", unsignedInteger(role));
        peer().answer(path, "Accessible.GetInterfaces", strings(interfaces));
        peer().answer(path, "Get Accessible.Parent", referenceProperty(peer().name(), parent));
        peer().answer(path, "Get Accessible.Name", stringProperty("name of " + path));
        peer().answer(path, "Get Accessible.AccessibleId", stringProperty("id of " + path));
        std::uint64_t bits = 0;
        for (const State state : states) {
            bits |= States::of({state}).bits();
        }
        objects_.push_back({{peer().name(), path},
                            {peer().name(), parent},
                            static_cast<std::int32_t>(children.size()),
                            interfaces,
                            role,
                            bits});
    }

    void startListing() {
        listObjects(objects_);
        start();
    }

    [[nodiscard]] std::vector<Element> elements() {
        std::vector<Element> result;
        for (const ListedObject& each : objects_) {
            result.push_back(object(each.object.path));
        }
        return result;
    }

    [[nodiscard]] std::vector<std::vector<AttributeAnswer>> copyAll(const std::vector<Element>& of) {
        return accessibility().copyAttributes(of, walkAttributes);
    }

    [[nodiscard]] std::vector<std::vector<AttributeAnswer>> copyOneByOne(const std::vector<Element>& of) {
        std::vector<std::vector<AttributeAnswer>> answers;
        for (const Element& element : of) {
            auto& row = answers.emplace_back();
            for (const std::string_view attribute : walkAttributes) {
                row.push_back(accessibility().copyAttribute(element, attribute));
            }
        }
        return answers;
    }

    [[nodiscard]] int listCount() { return peer().callCount(atspi::cachePath, "Cache.GetItems"); }

    std::vector<ListedObject>& listed() { return objects_; }

private:
    std::vector<ListedObject> objects_;
};

TEST_F(AccessibilityWalk, ReturnsWhatSingleCopiesReturn) {
    add("/window", frame, {State::active}, {}, {"/bar", "/text", "/plain", "/password", "/number"}, atspi::rootPath);
    add("/bar", atspi_role::menuBar, {}, {}, {"/title"});
    add("/title", atspi_role::menu, {State::sensitive}, {}, {"/item"}, "/bar");
    add("/item", atspi_role::menuItem, {State::enabled}, {}, {}, "/title");
    add("/orphan", atspi_role::menuItem, {}, {}, {}, "/nowhere");
    add("/text", atspi_role::text, {State::editable, State::focused, State::multiLine},
        {atspi::text, atspi::editableText});
    addText("/text", "hello", 5, {{1, 3}});
    add("/plain", pushButton, {});
    add("/password", passwordText, {State::editable}, {atspi::text});
    addText("/password", "****", 4, {}, 2);
    add("/number", 51, {}, {atspi::value});
    peer().answer("/number", "Get Value.CurrentValue", numberProperty(3));
    add("/odd", pushButton, {}, {atspi::text});
    startListing();
    const auto expected = copyOneByOne(elements());
    EXPECT_EQ(copyAll(elements()), expected);
    EXPECT_EQ(listCount(), 1);
    // The compared results are not all failures.
    EXPECT_EQ(expected[2][5], successOf(Text(u"AXMenuBarItem")));
    EXPECT_EQ(expected[3][5], successOf(Text(u"AXMenuItem")));
    EXPECT_EQ(expected[5][5], successOf(Text(u"AXTextArea")));
    EXPECT_EQ(expected[5][6], successOf(Text(u"el")));
    EXPECT_EQ(expected[6][6], failureOf(AXError::attributeUnsupported));
    EXPECT_EQ(expected[8][10], successOf(std::int64_t{3}));
}

TEST_F(AccessibilityWalk, ReturnsTheSameForUnlistedObjects) {
    add("/window", frame, {State::active}, {}, {"/a", "/b"}, atspi::rootPath);
    add("/a", pushButton, {State::defunct});
    add("/b", pushButton, {State::enabled});
    const auto all = elements();
    listed().pop_back();
    startListing();
    EXPECT_EQ(copyAll(all), copyOneByOne(all));
}

/// An application may list an object without its number of children, and a child with another parent.
TEST_F(AccessibilityWalk, RequestsChildrenFromTheObjectItself) {
    add("/window", frame, {}, {}, {"/a", "/b"}, atspi::rootPath);
    add("/a", pushButton, {}, {}, {"/c"}, "/b");
    add("/b", pushButton, {}, {}, {});
    listed()[1].childCount = -1;
    startListing();
    const std::array attributes{attribute::children};
    const std::vector<std::vector<AttributeAnswer>> expected{
        {successOf(std::vector{object("/a"), object("/b")})},
        {successOf(std::vector{object("/c")})},
        {successOf(std::vector<Element>())},
    };
    EXPECT_EQ(accessibility().copyAttributes(elements(), attributes), expected);
}

TEST_F(AccessibilityWalk, ReportsSettableTextsAsSingleRequestsDo) {
    add("/window", frame, {}, {}, {}, atspi::rootPath);
    add("/editable", atspi_role::text, {State::editable}, {atspi::text, atspi::editableText});
    add("/locked", atspi_role::text, {State::editable, State::readOnly}, {atspi::text, atspi::editableText});
    add("/shown", atspi_role::text, {State::editable}, {atspi::text});
    startListing();
    static_cast<void>(copyAll(elements()));
    const std::vector<SettableAnswer> expected{{AXError::attributeUnsupported, false},
                                               {AXError::success, true},
                                               {AXError::success, false},
                                               {AXError::success, false}};
    EXPECT_EQ(accessibility().areAttributesSettable(elements(), attribute::selectedText), expected);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(accessibility().isAttributeSettable(elements()[i], attribute::selectedText), expected[i]) << i;
    }
}

TEST_F(AccessibilityWalk, DropsTheListOnASingleElementOperation) {
    add("/window", frame, {}, {}, {"/a"}, atspi::rootPath);
    add("/a", pushButton, {});
    const auto role = std::make_shared<std::atomic<std::uint32_t>>(pushButton);
    peer().answerWith("/a", "Accessible.GetRole", [role] { return unsignedInteger(*role); });
    startListing();
    EXPECT_EQ(copyAll(elements())[1][5], successOf(Text(u"AXButton")));
    *role = frame;
    EXPECT_EQ(copy("/a", attribute::role), successOf(Text(u"AXWindow")));
    EXPECT_EQ(copyAll({object("/a")})[0][5], successOf(Text(u"AXWindow")));
}

TEST_F(AccessibilityWalk, RequestsNoListWithoutABatchOfChildren) {
    add("/window", frame, {}, {}, {"/a"}, atspi::rootPath);
    add("/a", pushButton, {});
    startListing();
    const std::array attributes{attribute::role, attribute::title};
    static_cast<void>(accessibility().copyAttributes(elements(), attributes));
    static_cast<void>(copyOneByOne(elements()));
    EXPECT_EQ(listCount(), 0);
}

TEST_F(AccessibilityWalk, SendsIdenticalPendingRequestsOnce) {
    add("/text", atspi_role::text, {State::focused}, {atspi::text, atspi::editableText}, {}, atspi::rootPath);
    addText("/text", "hello", 5, {{1, 3}});
    start();
    static_cast<void>(copyAll(elements()));
    for (const char* const call :
         {"Accessible.GetRole", "Accessible.GetInterfaces", "Get Accessible.ChildCount", "Text.GetNSelections",
          "Text.GetText", "Text.GetSelection", "Get Text.CharacterCount"}) {
        EXPECT_EQ(peer().callCount("/text", call), 1) << call;
    }
}

TEST_F(AccessibilityWalk, EndsSoonIfTheListRequestHangs) {
    add("/window", frame, {}, {}, {"/a"}, atspi::rootPath);
    add("/a", pushButton, {});
    listObjects(listed());
    peer().hang(atspi::cachePath, "Cache.GetItems");
    start();
    const auto began = std::chrono::steady_clock::now();
    for (const auto& answers : copyAll(elements())) {
        for (const AttributeAnswer& answer : answers) {
            EXPECT_EQ(answer, failureOf(AXError::cannotComplete));
        }
    }
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(1900));
}

TEST_F(AccessibilityWalk, HasInvalidElementsIfTheApplicationExits) {
    add("/window", frame, {}, {}, {}, atspi::rootPath);
    listObjects(listed());
    peer().leave(atspi::cachePath, "Cache.GetItems");
    start();
    const std::vector<AttributeAnswer> expected(walkAttributes.size(), failureOf(AXError::invalidUIElement));
    EXPECT_EQ(copyAll(elements()), std::vector<std::vector<AttributeAnswer>>{expected});
}

}  // namespace
}  // namespace lomaris::test
