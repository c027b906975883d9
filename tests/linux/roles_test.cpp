#include "platform/linux/atspi/roles.h"

#include <gtest/gtest.h>

#include <vector>

namespace lomaris {
namespace {

using atspi::State;
using atspi::States;

TEST(RoleName, MapsEveryRoleOfTheProtocol) {
    struct Case {
        std::string_view role;
        std::string_view name;
        std::string_view subrole;
    };
    // In the order of AT-SPI, which numbers its roles from 0.
    const std::vector<Case> cases{
        {"invalid", "AXUnknown", ""},
        {"accelerator label", "AXUnknown", ""},
        {"alert", "AXWindow", "AXDialog"},
        {"animation", "AXUnknown", ""},
        {"arrow", "AXUnknown", ""},
        {"calendar", "AXUnknown", ""},
        {"canvas", "AXImage", ""},
        {"check box", "AXCheckBox", ""},
        {"check menu item", "AXMenuItem", ""},
        {"color chooser", "AXWindow", "AXDialog"},
        {"column header", "AXCell", ""},
        {"combo box", "AXComboBox", ""},
        {"date editor", "AXDateField", ""},
        {"desktop icon", "AXUnknown", ""},
        {"desktop frame", "AXUnknown", ""},
        {"dial", "AXUnknown", ""},
        {"dialog", "AXWindow", "AXDialog"},
        {"directory pane", "AXUnknown", ""},
        {"drawing area", "AXImage", ""},
        {"file chooser", "AXWindow", "AXDialog"},
        {"filler", "AXGroup", ""},
        {"focus traversable", "AXUnknown", ""},
        {"font chooser", "AXWindow", "AXDialog"},
        {"frame", "AXWindow", "AXStandardWindow"},
        {"glass pane", "AXGroup", ""},
        {"HTML container", "AXWebArea", ""},
        {"icon", "AXImage", ""},
        {"image", "AXImage", ""},
        {"internal frame", "AXGroup", ""},
        {"label", "AXStaticText", ""},
        {"layered pane", "AXGroup", ""},
        {"list", "AXList", ""},
        {"list item", "AXGroup", ""},
        {"menu", "AXMenu", ""},
        {"menu bar", "AXMenuBar", ""},
        {"menu item", "AXMenuItem", ""},
        {"option pane", "AXGroup", ""},
        {"page tab", "AXRadioButton", "AXTabButton"},
        {"page tab list", "AXTabGroup", ""},
        {"panel", "AXGroup", ""},
        {"password text", "AXTextField", "AXSecureTextField"},
        {"popup menu", "AXMenu", ""},
        {"progress bar", "AXProgressIndicator", ""},
        {"push button", "AXButton", ""},
        {"radio button", "AXRadioButton", ""},
        {"radio menu item", "AXMenuItem", ""},
        {"root pane", "AXGroup", ""},
        {"row header", "AXCell", ""},
        {"scroll bar", "AXScrollBar", ""},
        {"scroll pane", "AXScrollArea", ""},
        {"separator", "AXSplitter", ""},
        {"slider", "AXSlider", ""},
        {"spin button", "AXIncrementor", ""},
        {"split pane", "AXSplitGroup", ""},
        {"status bar", "AXGroup", ""},
        {"table", "AXTable", ""},
        {"table cell", "AXCell", ""},
        {"table column header", "AXCell", ""},
        {"table row header", "AXCell", ""},
        {"tear-off menu item", "AXMenuItem", ""},
        {"terminal", "AXTextArea", ""},
        {"text", "AXTextField", ""},
        {"toggle button", "AXCheckBox", "AXToggle"},
        {"tool bar", "AXToolbar", ""},
        {"tool tip", "AXHelpTag", ""},
        {"tree", "AXOutline", ""},
        {"tree table", "AXOutline", ""},
        {"unknown", "AXUnknown", ""},
        {"viewport", "AXGroup", ""},
        {"window", "AXWindow", ""},
        {"extended", "AXUnknown", ""},
        {"header", "AXGroup", ""},
        {"footer", "AXGroup", ""},
        {"paragraph", "AXGroup", ""},
        {"ruler", "AXRuler", ""},
        {"application", "AXApplication", ""},
        {"autocomplete", "AXTextField", ""},
        {"edit bar", "AXTextField", ""},
        {"embedded", "AXGroup", ""},
        {"entry", "AXTextField", ""},
        {"chart", "AXUnknown", ""},
        {"caption", "AXStaticText", ""},
        {"document frame", "AXWebArea", ""},
        {"heading", "AXHeading", ""},
        {"page", "AXGroup", ""},
        {"section", "AXGroup", ""},
        {"redundant object", "AXUnknown", ""},
        {"form", "AXGroup", ""},
        {"link", "AXLink", ""},
        {"input method window", "AXUnknown", ""},
        {"table row", "AXRow", "AXTableRow"},
        {"tree item", "AXRow", "AXOutlineRow"},
        {"document spreadsheet", "AXGroup", ""},
        {"document presentation", "AXGroup", ""},
        {"document text", "AXGroup", ""},
        {"document web", "AXWebArea", ""},
        {"document email", "AXWebArea", ""},
        {"comment", "AXGroup", ""},
        {"list box", "AXList", ""},
        {"grouping", "AXGroup", ""},
        {"image map", "AXImage", ""},
        {"notification", "AXGroup", ""},
        {"info bar", "AXGroup", ""},
        {"level bar", "AXLevelIndicator", ""},
        {"title bar", "AXGroup", ""},
        {"block quote", "AXGroup", ""},
        {"audio", "AXUnknown", ""},
        {"video", "AXUnknown", ""},
        {"definition", "AXUnknown", ""},
        {"article", "AXGroup", "AXDocumentArticle"},
        {"landmark", "AXGroup", ""},
        {"log", "AXGroup", "AXApplicationLog"},
        {"marquee", "AXGroup", "AXApplicationMarquee"},
        {"math", "AXGroup", "AXDocumentMath"},
        {"rating", "AXUnknown", ""},
        {"timer", "AXGroup", "AXApplicationTimer"},
        {"static", "AXStaticText", ""},
        {"math fraction", "AXUnknown", ""},
        {"math root", "AXUnknown", ""},
        {"subscript", "AXUnknown", ""},
        {"superscript", "AXUnknown", ""},
        {"description list", "AXList", "AXDescriptionList"},
        {"description term", "AXUnknown", ""},
        {"description value", "AXUnknown", ""},
        {"footnote", "AXUnknown", ""},
        {"content deletion", "AXUnknown", ""},
        {"content insertion", "AXUnknown", ""},
        {"mark", "AXUnknown", ""},
        {"suggestion", "AXUnknown", ""},
        {"push button menu", "AXMenuButton", ""},
        {"switch", "AXUnknown", ""},
    };
    for (std::uint32_t number = 0; number < cases.size(); ++number) {
        EXPECT_EQ(roleName(number), cases[number].name) << cases[number].role;
        EXPECT_EQ(subroleName(number), cases[number].subrole) << cases[number].role;
    }
}

TEST(RoleName, IsUnknownForEveryOtherNumber) {
    for (const std::uint32_t number : {131U, 1000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(roleName(number), "AXUnknown") << number;
        EXPECT_EQ(subroleName(number), "") << number;
    }
}

TEST(RoleName, DependsOnTheStatesOfATextElement) {
    for (const std::uint32_t role : {atspi_role::text, atspi_role::entry}) {
        ASSERT_TRUE(roleDependsOnStates(role));
        EXPECT_EQ(roleName(role, States::of({State::multiLine})), "AXTextArea") << role;
        EXPECT_EQ(roleName(role, States::of({State::editable})), "AXTextField") << role;
    }
    ASSERT_TRUE(roleDependsOnStates(atspi_role::paragraph));
    EXPECT_EQ(roleName(atspi_role::paragraph, States::of({State::editable})), "AXTextArea");
    EXPECT_EQ(roleName(atspi_role::paragraph, States::of({State::multiLine})), "AXGroup");
    EXPECT_FALSE(roleDependsOnStates(atspi_role::menu));
}

TEST(RoleName, DependsOnTheParentInAMenuBar) {
    for (const std::uint32_t role : {atspi_role::menu, atspi_role::menuItem}) {
        ASSERT_TRUE(roleDependsOnParent(role));
        EXPECT_EQ(roleName(role, atspi_role::menuBar), "AXMenuBarItem") << role;
        EXPECT_EQ(roleName(role, atspi_role::menu), roleName(role)) << role;
    }
    EXPECT_FALSE(roleDependsOnParent(atspi_role::menuBar));
}

}  // namespace
}  // namespace lomaris
