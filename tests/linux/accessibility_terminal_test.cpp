#include "tests/linux/fake_desktop.h"

#include <cstdint>
#include <cstdlib>

namespace lomaris::test {
namespace {

using atspi::State;

constexpr std::uint32_t terminalRole = 60;
constexpr std::uint32_t textRole = 61;

/// An application whose window has a focused element.
class AccessibilityTerminal : public FakeDesktop {
protected:
    void addFocusedElement() {
        addObject(atspi::rootPath, {}, {"/window"});
        addObject("/window", {State::active, State::showing}, {"/element"});
        addObject("/element", {State::showing, State::focusable, State::focused});
    }

    [[nodiscard]] bool isTerminalFocused() { return accessibility().isTerminalFocused(processIdentifier()); }
};

TEST_F(AccessibilityTerminal, IsRecognizedByItsRole) {
    addFocusedElement();
    peer().answer("/element", "Accessible.GetRole", unsignedInteger(terminalRole));
    start();
    EXPECT_TRUE(isTerminalFocused());
}

TEST_F(AccessibilityTerminal, IsNotReportedForOtherElements) {
    addFocusedElement();
    peer().answer("/element", "Accessible.GetRole", unsignedInteger(textRole));
    start();
    EXPECT_FALSE(isTerminalFocused());
}

TEST_F(AccessibilityTerminal, IsNotReportedWithoutTheFocus) {
    addObject(atspi::rootPath, {}, {"/window"});
    addObject("/window", {State::active, State::showing}, {"/terminal"});
    addObject("/terminal", {State::showing, State::focusable});
    peer().answer("/terminal", "Accessible.GetRole", unsignedInteger(terminalRole));
    start();
    EXPECT_FALSE(isTerminalFocused());
}

TEST_F(AccessibilityTerminal, IsNotReportedIfTheApplicationHangs) {
    addFocusedElement();
    peer().hang("/element", "Accessible.GetRole");
    start();
    EXPECT_FALSE(accessibility().isTerminalFocused(1));
    EXPECT_FALSE(isTerminalFocused());
    // The application has missed a deadline and is not called again.
    const int calls = peer().callCount();
    EXPECT_FALSE(isTerminalFocused());
    EXPECT_EQ(peer().callCount(), calls);
}

TEST_F(AccessibilityTerminal, IsNotReportedWithoutABus) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    start();
    EXPECT_FALSE(isTerminalFocused());
}

}  // namespace
}  // namespace lomaris::test
