#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string_view>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;

class SimulatedMenus : public testing::Test {
protected:
    AttributeAnswer read(const Element& element, std::string_view name) {
        return desktop.accessibility().copyAttribute(element, name);
    }

    std::vector<Element> children(const Element& element) {
        return std::get<std::vector<Element>>(read(element, attribute::children).value);
    }

    /// Title, command character, modifiers and enabled state of an item.
    std::vector<AttributeAnswer> describe(const Element& item) {
        return {read(item, attribute::title), read(item, attribute::menuItemCommandCharacter),
                read(item, attribute::menuItemCommandModifiers), read(item, attribute::enabled)};
    }

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
};

const AttributeAnswer absent = answer(AXError::attributeUnsupported);
const AttributeAnswer commandAlone = answer(std::int64_t{0});

TEST_F(SimulatedMenus, AreReachableFromTheApplication) {
    const SimulatedMenuBar made = notes.addMenuBar({
        {u"File", {{u"Close", u"w"}}},
        {u"Edit", {{u"Undo", u"z"}, {u"Copy", u"c"}}},
    });
    const auto bar = std::get<Element>(read(notes.element().element(), attribute::menuBar).value);
    EXPECT_EQ(bar, made.bar.element());
    EXPECT_EQ(read(bar, attribute::role), answer(Text(u"AXMenuBar")));

    std::vector<std::vector<AttributeAnswer>> items;
    std::vector<AttributeAnswer> titles;
    for (const Element& barItem : children(bar)) {
        titles.push_back(read(barItem, attribute::title));
        EXPECT_EQ(read(barItem, attribute::role), answer(Text(u"AXMenuBarItem")));
        for (const Element& menu : children(barItem)) {
            EXPECT_EQ(read(menu, attribute::role), answer(Text(u"AXMenu")));
            for (const Element& item : children(menu)) {
                EXPECT_EQ(read(item, attribute::role), answer(Text(u"AXMenuItem")));
                items.push_back(describe(item));
            }
        }
    }
    const AttributeAnswer enabled = answer(true);
    EXPECT_EQ(titles, (std::vector<AttributeAnswer>{answer(Text(u"File")), answer(Text(u"Edit"))}));
    EXPECT_EQ(items, (std::vector<std::vector<AttributeAnswer>>{
                         {answer(Text(u"Close")), answer(Text(u"w")), commandAlone, enabled},
                         {answer(Text(u"Undo")), answer(Text(u"z")), commandAlone, enabled},
                         {answer(Text(u"Copy")), answer(Text(u"c")), commandAlone, enabled},
                     }));
}

TEST_F(SimulatedMenus, ItemsHaveOnlyTheirOwnAttributes) {
    struct Case {
        MenuItem item;
        std::vector<AttributeAnswer> expected;
    };
    const std::vector<Case> cases{
        {{u"Find"}, {answer(Text(u"Find")), absent, commandAlone, answer(true)}},
        {{.title = u"Copy", .commandCharacter = u"C", .enabled = false},
         {answer(Text(u"Copy")), answer(Text(u"C")), commandAlone, answer(false)}},
        {{u"Copy Style", u"c", 1, std::nullopt},
         {answer(Text(u"Copy Style")), answer(Text(u"c")), answer(std::int64_t{1}), absent}},
        {{.title = u"Copy", .commandCharacter = u"c", .modifiers = std::nullopt},
         {answer(Text(u"Copy")), answer(Text(u"c")), absent, answer(true)}},
        {{.title = u"Copy", .commandCharacter = u"", .modifiers = Text(u"none")},
         {answer(Text(u"Copy")), answer(Text()), answer(Text(u"none")), answer(true)}},
    };
    std::vector<MenuItem> items;
    for (const Case& each : cases) {
        items.push_back(each.item);
    }
    const SimulatedMenuBar made = notes.addMenuBar({{u"Edit", items}});
    for (std::size_t index = 0; index < cases.size(); ++index) {
        EXPECT_EQ(describe(made.menus[0].items[index].element()), cases[index].expected) << "item " << index;
    }
}

TEST_F(SimulatedMenus, AnUnscriptedItemIsPressedWithoutEffect) {
    const SimulatedMenuBar made = notes.addMenuBar({{u"Edit", {{u"Copy", u"c"}}}});
    const Element copy = made.item(u"Edit", u"Copy").element();
    EXPECT_EQ(desktop.accessibility().performAction(copy, action::press), AXError::success);
    EXPECT_EQ(desktop.pasteboard().changeCount(), 100);

    made.item(u"Edit", u"Copy").onAction(action::press, copies(u"chosen").after(milliseconds(40)));
    EXPECT_EQ(desktop.accessibility().performAction(copy, action::press), AXError::success);
    desktop.scheduling().sleep(milliseconds(40) - Duration(1));
    EXPECT_EQ(desktop.pasteboard().changeCount(), 100);
    desktop.scheduling().sleep(Duration(1));
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"chosen"));

    made.item(u"Edit", u"Copy").answersAction(action::press, AXError::failure);
    EXPECT_EQ(desktop.accessibility().performAction(copy, action::press), AXError::failure);
}

TEST_F(SimulatedMenus, AreFoundByTheirTitles) {
    const SimulatedMenuBar made =
        notes.addMenuBar({{u"Go", {{u"Back", u"["}}}, {u"Edit", {}}, {u"Edit", {{u"Cut", u"x"}, {u"Copy", u"c"}}}});
    EXPECT_EQ(made.item(u"Go", u"Back").element(), made.menus[0].items[0].element());
    EXPECT_EQ(made.item(u"Edit", u"Copy").element(), made.menus[2].items[1].element());
    EXPECT_DEATH(static_cast<void>(made.item(u"Go", u"Copy")), "the menu bar has no such item");
}

TEST_F(SimulatedMenus, CanBeScriptedFurther) {
    const SimulatedMenuBar made = notes.addMenuBar({{u"Edit", {{u"Copy", u"c"}}}});
    SimulatedElement barItem = made.menus[0].barItem;
    SimulatedElement menu = made.menus[0].menu;
    barItem.answers(attribute::title, std::int64_t{7});
    menu.answers(attribute::children, AXError::noValue);
    EXPECT_EQ(read(barItem.element(), attribute::title), answer(std::int64_t{7}));
    EXPECT_EQ(read(menu.element(), attribute::children), answer(AXError::noValue));
}

TEST_F(SimulatedMenus, ElementsAreNumberedInTheOrderOfCreation) {
    notes.addMenuBar({{u"File", {{u"Close", u"w"}}}, {u"Edit", {{u"Copy", u"c"}}}});
    const auto bar = std::get<Element>(read(notes.element().element(), attribute::menuBar).value);
    static_cast<void>(read(children(children(children(bar)[1])[0])[0], attribute::title));
    EXPECT_EQ(desktop.journal(), (std::vector<std::string>{
                                     "0.000000000 copyAttribute(812, AXMenuBar) -> 812/1",
                                     "0.000000000 copyAttribute(812/1, AXChildren) -> [812/2, 812/5]",
                                     "0.000000000 copyAttribute(812/5, AXChildren) -> [812/6]",
                                     "0.000000000 copyAttribute(812/6, AXChildren) -> [812/7]",
                                     "0.000000000 copyAttribute(812/7, AXTitle) -> \"Copy\"",
                                 }));
}

}  // namespace
}  // namespace lomaris::test
