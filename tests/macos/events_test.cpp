#include "tests/macos/fake_platform_test.h"

#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using Lines = std::vector<std::string>;

constexpr KeyStroke copyKey{8, commandFlag};

class MacOSEvents : public FakePlatformTest {};

TEST_F(MacOSEvents, ThePermissionIsLookedAtWithoutAskingAndAskedForOnRequest) {
    keyboard().mayPost = false;
    EXPECT_FALSE(events().preflightPostEventAccess());
    EXPECT_EQ(keyboard().requestCount, 0);
    keyboard().userGrants = false;
    EXPECT_FALSE(events().requestPostEventAccess());
    keyboard().userGrants = true;
    EXPECT_TRUE(events().requestPostEventAccess());
    EXPECT_EQ(keyboard().requestCount, 2);
    EXPECT_TRUE(events().preflightPostEventAccess());
}

TEST_F(MacOSEvents, AKeyStrokeIsMadeDownThenUpFromOneSourceOfTheHardwareState) {
    const auto keyStroke = events().createKeyStroke(copyKey);
    ASSERT_NE(keyStroke, nullptr);
    EXPECT_EQ(keyboard().made, (Lines{"source 1", "key 8 down from source 1", "key 8 up from source 1"}));
    EXPECT_EQ(keyboard().posted, Lines{});
}

TEST_F(MacOSEvents, BothEventsGoToTheSessionWithExactlyTheFlags) {
    events().postToSession(*events().createKeyStroke(copyKey));
    events().postToSession(*events().createKeyStroke({51, 0}));
    EXPECT_EQ(keyboard().posted, (Lines{"key 8 down flags 100000 to tap 1", "key 8 up flags 100000 to tap 1",
                                        "key 51 down flags 0 to tap 1", "key 51 up flags 0 to tap 1"}));
}

TEST_F(MacOSEvents, BothEventsGoToTheProcessWithExactlyTheFlags) {
    events().postToProcess(*events().createKeyStroke({9, commandFlag}), 4711);
    EXPECT_EQ(keyboard().posted,
              (Lines{"key 9 down flags 100000 to process 4711", "key 9 up flags 100000 to process 4711"}));
}

TEST_F(MacOSEvents, AKeyStrokeCanBePostedAgain) {
    const auto keyStroke = events().createKeyStroke({51, 0});
    events().postToSession(*keyStroke);
    events().postToProcess(*keyStroke, 3);
    EXPECT_EQ(keyboard().posted, (Lines{"key 51 down flags 0 to tap 1", "key 51 up flags 0 to tap 1",
                                        "key 51 down flags 0 to process 3", "key 51 up flags 0 to process 3"}));
}

TEST_F(MacOSEvents, CountersAreThoseOfTheWholeSession) {
    const auto session = kCGEventSourceStateCombinedSessionState;
    keyboard().counters = {{{session, kCGEventKeyDown}, 4294967295U},
                           {{session, kCGEventLeftMouseDown}, 210},
                           {{session, kCGEventRightMouseDown}, 4},
                           {{session, kCGEventOtherMouseDown}, 1},
                           {{kCGEventSourceStateHIDSystemState, kCGEventKeyDown}, 5}};
    EXPECT_EQ(events().inputCounter(InputEventType::keyDown), 4294967295U);
    EXPECT_EQ(events().inputCounter(InputEventType::leftMouseDown), 210U);
    EXPECT_EQ(events().inputCounter(InputEventType::rightMouseDown), 4U);
    EXPECT_EQ(events().inputCounter(InputEventType::otherMouseDown), 1U);
}

TEST_F(MacOSEvents, AKeyStrokeNeedsItsSourceAndBothEvents) {
    for (int call = 1; call <= 3; ++call) {
        FakeFaults::failCall(call);
        EXPECT_EQ(events().createKeyStroke(copyKey), nullptr) << call;
        EXPECT_TRUE(FakeFaults::hasFailed());
    }
    FakeFaults::failCall(4);
    EXPECT_NE(events().createKeyStroke(copyKey), nullptr);
    EXPECT_FALSE(FakeFaults::hasFailed());
    EXPECT_EQ(keyboard().posted, Lines{});
}

TEST_F(MacOSEvents, AnExceptionOfThePlatformStopsAtTheService) {
    const auto keyStroke = events().createKeyStroke(copyKey);
    keyboard().throws = true;
    EXPECT_FALSE(events().preflightPostEventAccess());
    EXPECT_FALSE(events().requestPostEventAccess());
    EXPECT_EQ(events().createKeyStroke(copyKey), nullptr);
    events().postToSession(*keyStroke);
    events().postToProcess(*keyStroke, 3);
    EXPECT_EQ(events().inputCounter(InputEventType::keyDown), 0U);
    EXPECT_EQ(keyboard().posted, Lines{});
}

}  // namespace
}  // namespace lomaris::test
