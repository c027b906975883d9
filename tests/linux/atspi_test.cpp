#include "platform/linux/atspi/atspi.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <map>
#include <string_view>

namespace lomaris::atspi {
namespace {

// In the order of AT-SPI, which numbers its states from 0.
constexpr std::array<std::string_view, 44> stateNames{
    "invalid",       "active",         "armed",           "busy",
    "checked",       "collapsed",      "defunct",         "editable",
    "enabled",       "expandable",     "expanded",        "focusable",
    "focused",       "has tooltip",    "horizontal",      "iconified",
    "modal",         "multi line",     "multiselectable", "opaque",
    "pressed",       "resizable",      "selectable",      "selected",
    "sensitive",     "showing",        "single line",     "stale",
    "transient",     "vertical",       "visible",         "manages descendants",
    "indeterminate", "required",       "truncated",       "animated",
    "invalid entry", "autocompletion", "selectable text", "is default",
    "visited",       "checkable",      "has popup",       "read only",
};

TEST(States, HaveTheNumbersOfTheProtocol) {
    const std::map<State, std::string_view> named{
        {State::active, "active"},
        {State::defunct, "defunct"},
        {State::editable, "editable"},
        {State::enabled, "enabled"},
        {State::focusable, "focusable"},
        {State::focused, "focused"},
        {State::multiLine, "multi line"},
        {State::sensitive, "sensitive"},
        {State::showing, "showing"},
        {State::visible, "visible"},
        {State::managesDescendants, "manages descendants"},
        {State::readOnly, "read only"},
    };
    EXPECT_EQ(named.size(), 12U);
    for (const auto& [state, name] : named) {
        EXPECT_EQ(stateNames[static_cast<std::size_t>(state)], name);
    }
}

TEST(States, AreOneBitEach) {
    EXPECT_EQ(States::of({State::active, State::readOnly}).bits(), 0x80000000002U);
    EXPECT_TRUE(States(0x80000000002U).has(State::readOnly));
    EXPECT_FALSE(States(0x80000000002U).has(State::editable));
}

}  // namespace
}  // namespace lomaris::atspi
