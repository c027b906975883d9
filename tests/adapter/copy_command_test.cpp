#include "accessibility/adapter/copy_command.h"

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

namespace lomaris {
namespace {

class FindCopyCommand : public testing::Test {
protected:
    std::optional<CopyCommand> find() {
        return findCopyCommand(desktop.accessibility(), RunningApplication{812, std::nullopt, std::nullopt});
    }
    bool finds(const MenuItem& item) {
        notes.addMenuBar({{u"Edit", {item}}});
        return find().has_value();
    }

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
};

TEST_F(FindCopyCommand, FindsNothingWithoutApplicationMenuBarOrMenus) {
    EXPECT_FALSE(findCopyCommand(desktop.accessibility(), std::nullopt));
    EXPECT_FALSE(find());
    notes.addMenuBar({});
    EXPECT_FALSE(find());
    notes.addMenuBar({{u"Edit", {}}});
    EXPECT_FALSE(find());
}

TEST_F(FindCopyCommand, FindsTheItemBoundToPlainCommandCUnderEdit) {
    const auto bar = notes.addMenuBar({{u"Edit", {{u"Cut", u"x"}, {u"Copy", u"c"}, {u"Paste", u"v"}}}});
    const auto command = find();
    ASSERT_TRUE(command);
    EXPECT_EQ(command->element, bar.item(u"Edit", u"Copy").element());
    EXPECT_EQ(command->isEnabled, true);
}

TEST_F(FindCopyCommand, PrefersEditToAMenuBeforeIt) {
    const auto bar = notes.addMenuBar({{u"Colour", {{u"Copy Colour", u"c"}}}, {u"Edit", {{u"Copy", u"c"}}}});
    EXPECT_EQ(find()->element, bar.item(u"Edit", u"Copy").element());
}

TEST_F(FindCopyCommand, SearchesMenusWithOtherTitlesInTheirOrder) {
    auto bar = notes.addMenuBar(
        {{u"Datei", {{u"Schliessen", u"w"}}}, {u"Bearbeiten", {{u"Kopieren", u"c"}}}, {u"edit", {{u"Copy", u"c"}}}});
    EXPECT_EQ(find()->element, bar.item(u"Bearbeiten", u"Kopieren").element());
    bar.menus[1].barItem.answers(attribute::title, AXError::cannotComplete);
    EXPECT_EQ(find()->element, bar.item(u"Bearbeiten", u"Kopieren").element());
}

TEST_F(FindCopyCommand, AcceptsCapitalC) { EXPECT_TRUE(finds({u"Copy", u"C"})); }

TEST_F(FindCopyCommand, SkipsItemsWithoutOrWithAnotherCharacter) {
    EXPECT_FALSE(finds({.title = u"Copy", .commandCharacter = std::nullopt}));
    EXPECT_FALSE(finds({u"Copy", u""}));
    EXPECT_FALSE(finds({u"Copy", u"x"}));
    EXPECT_FALSE(finds({u"Copy", u"cc"}));
    EXPECT_FALSE(finds({u"Copy", u"\u0107"}));
}

TEST_F(FindCopyCommand, SkipsACommandCharacterThatIsNotText) {
    auto bar = notes.addMenuBar({{u"Edit", {{u"Copy", u"c"}}}});
    bar.item(u"Edit", u"Copy").answers(attribute::menuItemCommandCharacter, std::int64_t{99});
    EXPECT_FALSE(find());
}

TEST_F(FindCopyCommand, SkipsItemsWithFurtherModifiers) {
    EXPECT_FALSE(
        finds({.title = u"Copy Style", .commandCharacter = u"c", .modifiers = AttributeValue(std::int64_t{1})}));
}

TEST_F(FindCopyCommand, ReadsMissingOrNonIntegerModifiersAsNone) {
    EXPECT_TRUE(finds({.title = u"Copy", .commandCharacter = u"c", .modifiers = std::nullopt}));
    EXPECT_TRUE(finds({.title = u"Copy", .commandCharacter = u"c", .modifiers = AttributeValue(Text(u"1"))}));
    EXPECT_TRUE(finds({.title = u"Copy", .commandCharacter = u"c", .modifiers = AttributeValue(OtherNumber{1.5})}));
}

TEST_F(FindCopyCommand, FindsDisabledItemsAndItemsOfUnknownState) {
    notes.addMenuBar({{u"Edit", {{.title = u"Copy", .commandCharacter = u"c", .enabled = false}}}});
    EXPECT_EQ(find()->isEnabled, false);
    notes.addMenuBar({{u"Edit", {{.title = u"Copy", .commandCharacter = u"c", .enabled = std::nullopt}}}});
    EXPECT_EQ(find()->isEnabled, std::nullopt);
}

TEST_F(FindCopyCommand, IgnoresSubmenus) {
    auto bar = notes.addMenuBar({{u"Edit", {{u"Copy Special", u"s"}}}});
    auto submenu = notes.addElement();
    auto item = notes.addElement();
    item.answers(attribute::menuItemCommandCharacter, Text(u"c"));
    submenu.answers(attribute::children, std::vector<Element>{item.element()});
    bar.item(u"Edit", u"Copy Special").answers(attribute::children, std::vector<Element>{submenu.element()});
    EXPECT_FALSE(find());
}

TEST_F(FindCopyCommand, FindsNothingInAnApplicationThatHangs) {
    notes.addMenuBar({{u"Edit", {{u"Copy", u"c"}}}});
    notes.hang();
    EXPECT_FALSE(find());
}

}  // namespace
}  // namespace lomaris
