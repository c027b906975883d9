#include "tests/platform/events_contract.h"

#include <cstdint>
#include <memory>

namespace lomaris::test {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EventsContract);

namespace {

constexpr KeyStroke copyKey{8, commandFlag};
constexpr KeyStroke pasteKey{9, commandFlag};
constexpr KeyStroke deleteKey{51, 0};

TEST_P(EventsContract, ThePermissionIsGrantedWithAndWithoutRequest) {
    EXPECT_TRUE(events().preflightPostEventAccess());
    EXPECT_TRUE(events().requestPostEventAccess());
    EXPECT_TRUE(events().preflightPostEventAccess());
}

TEST_P(EventsContract, CreatesTheKeyStrokesOfTheTool) {
    for (const KeyStroke keyStroke : {copyKey, pasteKey, deleteKey}) {
        EXPECT_NE(events().createKeyStroke(keyStroke), nullptr) << keyStroke.keyCode;
    }
}

TEST_P(EventsContract, CreatingAKeyStrokePostsNothing) {
    const std::uint32_t before = events().inputCounter(InputEventType::keyDown);
    events().createKeyStroke(copyKey).reset();
    EXPECT_EQ(events().inputCounter(InputEventType::keyDown), before);
}

TEST_P(EventsContract, CountersDoNotChangeWithoutInput) {
    for (const InputEventType type : {InputEventType::keyDown, InputEventType::leftMouseDown,
                                      InputEventType::rightMouseDown, InputEventType::otherMouseDown}) {
        EXPECT_EQ(events().inputCounter(type), events().inputCounter(type)) << static_cast<std::uint32_t>(type);
    }
}

TEST_P(EventsContract, TheKeyCounterIncreasesWhenTheUserTypes) {
    const std::uint32_t before = events().inputCounter(InputEventType::keyDown);
    world().userTypes();
    EXPECT_NE(events().inputCounter(InputEventType::keyDown), before);
}

TEST_P(EventsContract, TheKeyCounterIncreasesWhenAKeyIsPosted) {
    const auto keyStroke = events().createKeyStroke(deleteKey);
    ASSERT_NE(keyStroke, nullptr);
    world().prepareForKeys();
    const std::uint32_t before = events().inputCounter(InputEventType::keyDown);
    events().postToSession(*keyStroke);
    EXPECT_TRUE(world().comesTrue([&] { return events().inputCounter(InputEventType::keyDown) != before; }));
}

}  // namespace
}  // namespace lomaris::test
