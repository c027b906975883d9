#include "platform/attributes.h"
#include "tests/linux/fake_desktop.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using atspi::State;

const std::string window = "/window";
const std::string text = "/text";

/// A raiser that records its calls.
class NotingRaiser {
public:
    bool raise(ProcessIdentifier processIdentifier, TextView title) {
        raised.emplace_back(processIdentifier, Text(title));
        return succeeds;
    }

    std::vector<std::pair<ProcessIdentifier, Text>> raised;
    bool succeeds = true;
};

class RaisingAndFocusing : public FakeDesktop {
protected:
    void SetUp() override {
        FakeDesktop::SetUp();
        if (IsSkipped()) {
            return;
        }
        accessibility_ = makeLinuxAccessibility(
            workspace(), [this](ProcessIdentifier process, TextView title) { return raiser_.raise(process, title); });
        addObject(atspi::rootPath, {}, {"/other", window});
        addObject("/other", {});
        addObject(window, {State::active}, {text});
        peer().answer(window, "Get Accessible.Name", stringProperty("a title"));
        addObject(text, {State::focusable, State::focused});
    }
    void TearDown() override {
        accessibility_.reset();
        FakeDesktop::TearDown();
    }

    NotingRaiser& raiser() { return raiser_; }
    AXError raise(const std::string& path) { return accessibility_->performAction(object(path), action::raise); }
    AXError set(const std::string& path, std::string_view attribute, const AttributeValue& value) {
        return accessibility_->setAttribute(object(path), attribute, value);
    }

    using Raised = std::vector<std::pair<ProcessIdentifier, Text>>;
    [[nodiscard]] Raised theWindow() const { return {{processIdentifier(), u"a title"}}; }

private:
    NotingRaiser raiser_;
    std::unique_ptr<Accessibility> accessibility_;
};

TEST_F(RaisingAndFocusing, RaisesAWindowByItsTitle) {
    start();
    EXPECT_EQ(raise(window), AXError::success);
    EXPECT_EQ(raiser().raised, theWindow());
}

TEST_F(RaisingAndFocusing, CannotCompleteIfTheWindowIsNotActivated) {
    raiser().succeeds = false;
    start();
    EXPECT_EQ(raise(window), AXError::cannotComplete);
    EXPECT_EQ(raiser().raised, theWindow());
}

TEST_F(RaisingAndFocusing, RaisesAWindowThatIsSetAsMainOrFocused) {
    start();
    for (const auto& attribute : {attribute::main, attribute::focused}) {
        raiser().raised.clear();
        EXPECT_EQ(set(window, attribute, true), AXError::success) << attribute;
        EXPECT_EQ(raiser().raised, theWindow()) << attribute;
        EXPECT_EQ(set(window, attribute, false), AXError::illegalArgument) << attribute;
        EXPECT_EQ(raiser().raised, theWindow()) << attribute;
    }
}

TEST_F(RaisingAndFocusing, RaisesOnlyWindows) {
    start();
    EXPECT_EQ(raise(text), AXError::actionUnsupported);
    EXPECT_EQ(set(text, attribute::main, true), AXError::attributeUnsupported);
    EXPECT_EQ(raiser().raised, Raised());
}

TEST_F(RaisingAndFocusing, RaisesNothingWithoutATitle) {
    peer().answer(window, "Get Accessible.Name", integerProperty(1));
    start();
    EXPECT_EQ(raise(window), AXError::failure);
    EXPECT_EQ(raiser().raised, Raised());
}

TEST_F(RaisingAndFocusing, GivesAnObjectTheFocus) {
    peer().answer(text, "Component.GrabFocus", boolean(true));
    start();
    EXPECT_EQ(set(text, attribute::focused, true), AXError::success);
    EXPECT_EQ(set(text, attribute::focused, false), AXError::illegalArgument);
    EXPECT_EQ(peer().callCount(text, "Component.GrabFocus"), 1);
    EXPECT_EQ(raiser().raised, Raised());
}

TEST_F(RaisingAndFocusing, ReportsTheStateInsteadOfTheReply) {
    peer().answer(text, "Component.GrabFocus", boolean(false));
    addObject("/lying", {State::focusable});
    peer().answer("/lying", "Component.GrabFocus", boolean(true));
    start();
    EXPECT_EQ(set(text, attribute::focused, true), AXError::success);
    EXPECT_EQ(set("/lying", attribute::focused, true), AXError::cannotComplete);
}

TEST_F(RaisingAndFocusing, FailsIfTheObjectFails) {
    peer().answer(text, "Component.GrabFocus", string("no boolean"));
    addObject("/gone", {State::defunct});
    peer().answerError("/gone", "Component.GrabFocus", "org.freedesktop.DBus.Error.UnknownObject");
    addObject("/without", {});
    peer().answer("/stateless", "Component.GrabFocus", boolean(true));
    peer().answer("/stateless", "Accessible.GetState", integer(1));
    start();
    EXPECT_EQ(set(text, attribute::focused, true), AXError::failure);
    EXPECT_EQ(set("/gone", attribute::focused, true), AXError::invalidUIElement);
    EXPECT_EQ(set("/without", attribute::focused, true), AXError::attributeUnsupported);
    EXPECT_EQ(set("/stateless", attribute::focused, true), AXError::failure);
}

}  // namespace
}  // namespace lomaris::test
