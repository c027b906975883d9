#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

TEST(SimulatedEvents, PermissionIsScripted) {
    struct Case {
        bool granted;
        bool requestAnswer;
        std::vector<bool> expected;
    };
    for (const Case& each : {Case{true, false, {true, true, true}}, Case{false, false, {false, false, false}},
                             Case{false, true, {false, true, true}}}) {
        SimulatedDesktop desktop;
        desktop.setPostEventAccess(each.granted);
        desktop.setPostEventRequestAnswer(each.requestAnswer);
        EventServices& events = desktop.events();
        const bool before = events.preflightPostEventAccess();
        const bool asked = events.requestPostEventAccess();
        const bool after = events.preflightPostEventAccess();
        EXPECT_EQ((std::vector<bool>{before, asked, after}), each.expected) << each.granted << each.requestAnswer;
    }
}

TEST(SimulatedEvents, RecordsWhatWasPostedWhereAndWhen) {
    SimulatedDesktop desktop;
    const auto copy = desktop.events().createKeyStroke({8, commandFlag});
    const auto remove = desktop.events().createKeyStroke({51, 0});
    desktop.events().postToSession(*copy);
    desktop.scheduling().sleep(milliseconds(80));
    desktop.events().postToProcess(*remove, 812);
    EXPECT_EQ(desktop.postedKeyStrokes(), (std::vector<PostedKeyStroke>{{{8, commandFlag}, std::nullopt, Moment(0)},
                                                                        {{51, 0}, 812, milliseconds(80)}}));
    EXPECT_EQ(desktop.inputCounters(), (InputCounters{1, 0, 0, 0}));
    EXPECT_EQ(desktop.journal(),
              (Lines{"0.000000000 createKeyStroke(key 8, flags 0x100000) -> events",
                     "0.000000000 createKeyStroke(key 51, flags 0x0) -> events",
                     "0.000000000 postToSession(key 8, flags 0x100000)", "0.000000000 sleep(0.080000000)",
                     "0.080000000 postToProcess(key 51, flags 0x0, 812)"}));
}

TEST(SimulatedEvents, FailsToCreateAsManyKeyStrokesAsScripted) {
    SimulatedDesktop desktop;
    desktop.failKeyStrokes(2);
    EXPECT_EQ(desktop.events().createKeyStroke({8, commandFlag}), nullptr);
    EXPECT_EQ(desktop.events().createKeyStroke({8, commandFlag}), nullptr);
    EXPECT_NE(desktop.events().createKeyStroke({8, commandFlag}), nullptr);
    EXPECT_EQ(desktop.postedKeyStrokes(), std::vector<PostedKeyStroke>{});
}

TEST(SimulatedEvents, CountsTheInputOfTheUser) {
    SimulatedDesktop desktop;
    desktop.setInputCounters({1532, 210, 4, 0});
    desktop.userTypes();
    desktop.userClicks();
    desktop.userClicks(InputEventType::rightMouseDown);
    desktop.userClicks(InputEventType::otherMouseDown);
    EXPECT_EQ(desktop.inputCounters(), (InputCounters{1533, 211, 5, 1}));
    EventServices& events = desktop.events();
    EXPECT_EQ(events.inputCounter(InputEventType::keyDown), 1533U);
    EXPECT_EQ(events.inputCounter(InputEventType::leftMouseDown), 211U);
    EXPECT_EQ(events.inputCounter(InputEventType::rightMouseDown), 5U);
    EXPECT_EQ(events.inputCounter(InputEventType::otherMouseDown), 1U);
}

}  // namespace
}  // namespace lomaris::test
