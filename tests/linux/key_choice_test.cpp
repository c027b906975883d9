#include "platform/linux/x11/keyboard/key_choice.h"

#include <gtest/gtest.h>

#include <ostream>

namespace lomaris {

// GoogleTest finds this function through its namespace.
static void PrintTo(const KeyWish& wish, std::ostream* stream) {
    *stream << (wish.withControl ? "Control+" : "") << (wish.withShift ? "Shift+" : "") << wish.keysym;
}

namespace test {
namespace {

using applications::EditingKeys;

constexpr KeyStroke copyKey{8, commandFlag};
constexpr KeyStroke pasteKey{9, commandFlag};
constexpr KeyStroke deleteKey{51, 0};
constexpr Keysym backspace = 0xff08;

TEST(KeyChoice, IsControlForCommandInOrdinaryApplications) {
    EXPECT_EQ(chooseKeys(copyKey, EditingKeys::control), (KeyWish{.keysym = 'c', .withControl = true}));
    EXPECT_EQ(chooseKeys(pasteKey, EditingKeys::control), (KeyWish{.keysym = 'v', .withControl = true}));
    EXPECT_EQ(chooseKeys(deleteKey, EditingKeys::control), KeyWish{.keysym = backspace});
}

TEST(KeyChoice, OnlyCopiesWithShiftInSomeTerminals) {
    EXPECT_EQ(chooseKeys(copyKey, EditingKeys::controlShiftToCopy),
              (KeyWish{.keysym = 'c', .withControl = true, .withShift = true}));
    EXPECT_EQ(chooseKeys(pasteKey, EditingKeys::controlShiftToCopy), std::nullopt);
    EXPECT_EQ(chooseKeys(deleteKey, EditingKeys::controlShiftToCopy), std::nullopt);
}

TEST(KeyChoice, IsNoneIfNoKeyIsSafe) {
    for (const KeyStroke keyStroke : {copyKey, pasteKey, deleteKey}) {
        EXPECT_EQ(chooseKeys(keyStroke, EditingKeys::none), std::nullopt) << keyStroke.keyCode;
    }
}

TEST(KeyChoice, IsNoneForAnyOtherStroke) {
    for (const EditingKeys keys : {EditingKeys::control, EditingKeys::controlShiftToCopy, EditingKeys::none}) {
        for (const KeyStroke keyStroke : {KeyStroke{0, 0}, KeyStroke{7, commandFlag}, KeyStroke{0xffff, 0},
                                          KeyStroke{8, commandFlag | 0x20000}, KeyStroke{51, 1}}) {
            EXPECT_EQ(chooseKeys(keyStroke, keys), std::nullopt) << keyStroke.keyCode << ", " << keyStroke.flags;
        }
    }
}

KeyReceiver windowOf(std::string_view className) {
    return {.window = 7, .processIdentifier = 4711, .application = applications::findApplication(className)};
}

const TerminalQuery never = [](ProcessIdentifier process) {
    ADD_FAILURE() << "queried for " << process;
    return true;
};

TEST(KeyChoice, UsesTheKeysOfTheTable) {
    EXPECT_EQ(editingKeysOf(windowOf("Firefox"), never), EditingKeys::control);
    EXPECT_EQ(editingKeysOf(windowOf("Xfce4-terminal"), never), EditingKeys::controlShiftToCopy);
    EXPECT_EQ(editingKeysOf(windowOf("XTerm"), never), EditingKeys::none);
}

TEST(KeyChoice, QueriesTheRoleOnlyForUnlistedClasses) {
    ProcessIdentifier queried = 0;
    bool isTerminal = true;
    const TerminalQuery query = [&](ProcessIdentifier process) {
        queried = process;
        return isTerminal;
    };
    EXPECT_EQ(editingKeysOf(windowOf("Unknown"), query), EditingKeys::none);
    EXPECT_EQ(queried, 4711);
    isTerminal = false;
    EXPECT_EQ(editingKeysOf(windowOf("Unknown"), query), EditingKeys::control);
}

TEST(KeyChoice, IsOrdinaryWithoutAWindowOrAProcess) {
    EXPECT_EQ(editingKeysOf(std::nullopt, never), EditingKeys::control);
    EXPECT_EQ(editingKeysOf(KeyReceiver{.window = 7, .processIdentifier = {}}, never), EditingKeys::control);
}

const TerminalQuery noTerminal = [](ProcessIdentifier) { return false; };
const TerminalQuery terminal = [](ProcessIdentifier) { return true; };

TEST(KeyChoice, StaysRightForTheSameReceiverWithoutAnotherQuery) {
    const PlannedStroke stroke{copyKey, windowOf("Unknown"), EditingKeys::control};
    EXPECT_EQ(keysStillRight(stroke, windowOf("Unknown"), never), chooseKeys(copyKey, EditingKeys::control));
}

TEST(KeyChoice, StaysRightForAnotherReceiverWithTheSameKeys) {
    const PlannedStroke stroke{copyKey, windowOf("Unknown"), EditingKeys::control};
    const auto wish = chooseKeys(copyKey, EditingKeys::control);
    EXPECT_EQ(keysStillRight(stroke, windowOf("Firefox"), never), wish);
    KeyReceiver other = windowOf("Unknown");
    other.window = 8;
    EXPECT_EQ(keysStillRight(stroke, other, noTerminal), wish);
    EXPECT_EQ(keysStillRight(stroke, std::nullopt, never), wish);
}

TEST(KeyChoice, IsNoLongerRightForAReceiverWithOtherKeys) {
    const PlannedStroke ordinary{copyKey, windowOf("Firefox"), EditingKeys::control};
    EXPECT_EQ(keysStillRight(ordinary, windowOf("XTerm"), never), std::nullopt);
    EXPECT_EQ(keysStillRight(ordinary, windowOf("Xfce4-terminal"), never), std::nullopt);
    EXPECT_EQ(keysStillRight(ordinary, windowOf("Unknown"), terminal), std::nullopt);
    const PlannedStroke shifted{copyKey, windowOf("Xfce4-terminal"), EditingKeys::controlShiftToCopy};
    EXPECT_EQ(keysStillRight(shifted, windowOf("Firefox"), never), std::nullopt);
    EXPECT_EQ(keysStillRight(shifted, windowOf("XTerm"), never), std::nullopt);
    const PlannedStroke remove{deleteKey, windowOf("Firefox"), EditingKeys::control};
    EXPECT_EQ(keysStillRight(remove, windowOf("Xfce4-terminal"), never), std::nullopt);
}

}  // namespace
}  // namespace test
}  // namespace lomaris
