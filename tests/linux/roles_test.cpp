#include "platform/linux/roles.h"

#include <gtest/gtest.h>

#include <vector>

namespace lomaris {
namespace {

using atspi::State;
using atspi::States;

TEST(RoleName, NamesTheRolesThatTheLogicLooksAt) {
    struct Case {
        std::uint32_t number;
        std::string_view role;
        std::string_view subrole;
    };
    const std::vector<Case> cases{
        {7, "AXCheckBox", ""},        {23, "AXWindow", "AXStandardWindow"},
        {16, "AXWindow", "AXDialog"}, {29, "AXStaticText", ""},
        {33, "AXMenu", ""},           {34, "AXMenuBar", ""},
        {35, "AXMenuItem", ""},       {40, "AXTextField", "AXSecureTextField"},
        {43, "AXButton", ""},         {60, "AXTextArea", ""},
        {61, "AXTextField", ""},      {75, "AXApplication", ""},
        {79, "AXTextField", ""},      {95, "AXWebArea", ""},
        {116, "AXStaticText", ""},    {129, "AXMenuButton", ""},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(roleName(each.number), each.role) << each.number;
        EXPECT_EQ(subroleName(each.number), each.subrole) << each.number;
    }
}

TEST(RoleName, IsUnknownForEveryOtherNumber) {
    for (const std::uint32_t number : {0U, 1U, 67U, 130U, 1000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(roleName(number), "AXUnknown") << number;
        EXPECT_EQ(subroleName(number), "") << number;
    }
}

TEST(RoleName, TellsAnAreaFromAFieldByItsStates) {
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

TEST(RoleName, TellsWhatStandsInAMenuBarByTheParent) {
    for (const std::uint32_t role : {atspi_role::menu, atspi_role::menuItem}) {
        ASSERT_TRUE(roleDependsOnParent(role));
        EXPECT_EQ(roleName(role, atspi_role::menuBar), "AXMenuBarItem") << role;
        EXPECT_EQ(roleName(role, atspi_role::menu), roleName(role)) << role;
    }
    EXPECT_FALSE(roleDependsOnParent(atspi_role::menuBar));
}

}  // namespace
}  // namespace lomaris
