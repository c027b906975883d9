#include "tests/linux/fake_desktop.h"

#include "platform/attributes.h"

namespace lomaris::test {
namespace {

using atspi::State;

class AccessibilityFocus : public FakeDesktop {
protected:
    void addWindows(const std::vector<std::string>& windows) { addObject(atspi::rootPath, {}, windows); }
};

TEST_F(AccessibilityFocus, UsesGetMatchesIfSupported) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/text"});
    peer().answer("/window", "Collection.GetMatches", references({{peer().name(), "/text"}}));
    start();
    EXPECT_EQ(copyFocused(), successOf(object("/text")));
    EXPECT_EQ(peer().callCount("/window", "Accessible.GetChildren"), 0);
}

TEST_F(AccessibilityFocus, IsNoValueIfGetMatchesFindsNothing) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/text"});
    peer().answer("/window", "Collection.GetMatches", references({}));
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::noValue));
}

TEST_F(AccessibilityFocus, WalksTheActiveWindowOtherwise) {
    addWindows({"/other", "/window"});
    addObject("/other", {State::showing}, {"/other/text"});
    addObject("/other/text", {State::showing, State::focusable, State::focused});
    addObject("/window", {State::active, State::showing}, {"/bar", "/pane"});
    addObject("/bar", {State::showing, State::visible});
    addObject("/pane", {State::showing, State::visible}, {"/text"});
    addObject("/text", {State::showing, State::visible, State::focusable, State::focused});
    start();
    EXPECT_EQ(copyFocused(), successOf(object("/text")));
    EXPECT_EQ(peer().callCount("/other/text", "Accessible.GetState"), 0);
}

TEST_F(AccessibilityFocus, WalksEveryWindowIfNoneIsActive) {
    addWindows({"/other", "/window"});
    addObject("/other", {State::showing});
    addObject("/window", {State::showing}, {"/text"});
    addObject("/text", {State::showing, State::focusable, State::focused});
    start();
    EXPECT_EQ(copyFocused(), successOf(object("/text")));
}

TEST_F(AccessibilityFocus, PrefersFocusableObjects) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/tab", "/pane"});
    addObject("/tab", {State::showing, State::focused});
    addObject("/pane", {State::showing}, {"/text"});
    addObject("/text", {State::showing, State::focusable, State::focused});
    start();
    EXPECT_EQ(copyFocused(), successOf(object("/text")));
}

TEST_F(AccessibilityFocus, AcceptsAnUnfocusableObjectIfThereIsNoOther) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/tab"});
    addObject("/tab", {State::showing, State::focused});
    start();
    EXPECT_EQ(copyFocused(), successOf(object("/tab")));
}

TEST_F(AccessibilityFocus, SearchesObjectsThatAreNotShowingLast) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/closed", "/scrolled", "/hidden"});
    addObject("/closed", {State::visible});
    addObject("/scrolled", {State::visible}, {"/text"});
    addObject("/hidden", {}, {"/never"});
    addObject("/text", {State::visible, State::focusable, State::focused});
    start();
    EXPECT_EQ(copyFocused(), successOf(object("/text")));
    EXPECT_EQ(peer().callCount("/never", "Accessible.GetState"), 0);
}

TEST_F(AccessibilityFocus, IsNoValueIfNothingHasTheFocus) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/text"});
    addObject("/text", {State::showing, State::focusable});
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::noValue));
}

TEST_F(AccessibilityFocus, IsNoValueWithoutWindows) {
    addWindows({});
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::noValue));
    EXPECT_EQ(accessibility().copyAttribute(application(), attribute::focusedWindow), failureOf(AXError::noValue));
    EXPECT_EQ(accessibility().copyAttribute(application(), attribute::windows), successOf(std::vector<Element>()));
}

TEST_F(AccessibilityFocus, StopsInACyclicTree) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/window", "/window"});
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::noValue));
    EXPECT_EQ(peer().callCount("/window", "Accessible.GetState"), 1 + 3000) << "once as a window, then in the walk";
}

TEST_F(AccessibilityFocus, DoesNotListTheCellsOfATable) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/table"});
    addObject("/table", {State::showing, State::managesDescendants}, {"/cell"});
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::noValue));
    EXPECT_EQ(peer().callCount("/table", "Accessible.GetChildren"), 0);
}

TEST_F(AccessibilityFocus, CannotCompleteIfGetMatchesHangs) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/text"});
    peer().hang("/window", "Collection.GetMatches");
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::cannotComplete));
    EXPECT_EQ(peer().callCount("/window", "Accessible.GetChildren"), 0);
}

TEST_F(AccessibilityFocus, CannotCompleteIfTheApplicationHangsDuringTheWalk) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/pane"});
    addObject("/pane", {State::showing});
    peer().hang("/pane", "Accessible.GetChildren");
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::cannotComplete));
    const int calls = peer().callCount();
    EXPECT_EQ(copyFocused(), failureOf(AXError::cannotComplete));
    EXPECT_EQ(peer().callCount(), calls) << "a hung peer is not called again";
}

TEST_F(AccessibilityFocus, CannotCompleteIfGetStateHangs) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/text"});
    peer().hang("/text", "Accessible.GetState");
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::cannotComplete));
}

TEST_F(AccessibilityFocus, CannotCompleteIfGetStateOfAWindowHangs) {
    addWindows({"/window"});
    peer().hang("/window", "Accessible.GetState");
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::cannotComplete));
}

TEST_F(AccessibilityFocus, FailsIfTheListOfWindowsIsMalformed) {
    peer().answer(atspi::rootPath, "Accessible.GetChildren", strings({"a"}));
    start();
    EXPECT_EQ(copyFocused(), failureOf(AXError::failure));
}

TEST_F(AccessibilityFocus, SystemWideIsThatOfTheFrontApplication) {
    addWindows({"/window"});
    addObject("/window", {State::active, State::showing}, {"/text"});
    addObject("/text", {State::showing, State::focusable, State::focused});
    start();
    const Element system = accessibility().systemWideElement();
    EXPECT_EQ(accessibility().copyAttribute(system, attribute::focusedUIElement), failureOf(AXError::noValue));
    workspace().front = RunningApplication{processIdentifier(), std::nullopt, std::nullopt};
    EXPECT_EQ(accessibility().copyAttribute(system, attribute::focusedUIElement), successOf(object("/text")));
    workspace().front = RunningApplication{1, std::nullopt, std::nullopt};
    EXPECT_EQ(accessibility().copyAttribute(system, attribute::focusedUIElement), failureOf(AXError::apiDisabled));
}

TEST_F(AccessibilityFocus, DistinguishesFocusedAndMainWindow) {
    addWindows({"/hidden", "/second", "/first"});
    addObject("/hidden", {});
    addObject("/second", {State::showing});
    addObject("/first", {State::showing, State::active});
    start();
    EXPECT_EQ(accessibility().copyAttribute(application(), attribute::windows),
              successOf(std::vector<Element>{object("/hidden"), object("/second"), object("/first")}));
    EXPECT_EQ(accessibility().copyAttribute(application(), attribute::focusedWindow), successOf(object("/first")));
    EXPECT_EQ(accessibility().copyAttribute(application(), attribute::mainWindow), successOf(object("/first")));
    EXPECT_EQ(copy("/first", attribute::main), successOf(true));
    EXPECT_EQ(copy("/second", attribute::main), successOf(false));
}

TEST_F(AccessibilityFocus, HasAMainWindowInABackgroundApplication) {
    addWindows({"/hidden", "/window"});
    addObject("/hidden", {});
    addObject("/window", {State::showing});
    start();
    EXPECT_EQ(accessibility().copyAttribute(application(), attribute::focusedWindow), failureOf(AXError::noValue));
    EXPECT_EQ(accessibility().copyAttribute(application(), attribute::mainWindow), successOf(object("/window")));
}

}  // namespace
}  // namespace lomaris::test
