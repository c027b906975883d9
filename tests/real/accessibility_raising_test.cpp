#include "platform/attributes.h"
#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/support/waiting.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lomaris::test {
namespace {

class AccessibilityRaising : public testing::Test {
protected:
    void SetUp() override {
        for (const EditorProgram& program : {mousepad(), featherPad()}) {
            if (const std::string missing = missingFor(program); !missing.empty()) {
                GTEST_SKIP() << missing;
            }
        }
    }

    Accessibility& accessibility() { return platform_->accessibility(); }

    ElementAnswer mainWindowOf(const Editor& editor) {
        return accessibility().copyElementAttribute(accessibility().applicationElement(editor.processIdentifier()),
                                                    attribute::mainWindow);
    }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

TEST_F(AccessibilityRaising, RaisesAWindowInEveryWay) {
    const Editor gtk(mousepad(), "first");
    const Editor qt(featherPad(), "second");
    const auto gtkWindow = mainWindowOf(gtk);
    const auto qtWindow = mainWindowOf(qt);
    ASSERT_EQ(gtkWindow.error, AXError::success);
    ASSERT_EQ(qtWindow.error, AXError::success);
    EXPECT_EQ(accessibility().performAction(*gtkWindow.element, action::raise), AXError::success);
    EXPECT_EQ(processInFront(), gtk.processIdentifier());
    EXPECT_EQ(accessibility().setAttribute(*qtWindow.element, attribute::main, true), AXError::success);
    EXPECT_EQ(processInFront(), qt.processIdentifier());
    EXPECT_EQ(accessibility().setAttribute(*gtkWindow.element, attribute::focused, true), AXError::success);
    EXPECT_EQ(processInFront(), gtk.processIdentifier());
}

TEST_F(AccessibilityRaising, DistinguishesWindowsByTitle) {
    Editor editor(mousepad(), "text");
    editor.mark(0, 4, "text");
    pressKeys({"ctrl+shift+n"});
    ASSERT_TRUE(waitFor([] { return titleInFront().find("Untitled") != std::string::npos; }));
    const Element application = accessibility().applicationElement(editor.processIdentifier());
    std::vector<Element> windows;
    ASSERT_TRUE(waitFor([&] {
        const AttributeAnswer answer = accessibility().copyAttribute(application, attribute::windows);
        windows = std::get<std::vector<Element>>(answer.value);
        return windows.size() == 2;
    }));
    for (int round = 0; round < 2; ++round) {
        for (const Element& window : windows) {
            const AttributeAnswer title = accessibility().copyAttribute(window, attribute::title);
            EXPECT_EQ(accessibility().performAction(window, action::raise), AXError::success);
            EXPECT_EQ(titleInFront(), utf8FromText(std::get<Text>(title.value)));
        }
    }
}

TEST_F(AccessibilityRaising, RaisesOnlyWindows) {
    Editor editor(mousepad(), "text");
    // When a text can be selected in it, the editor has exposed its focused object.
    editor.mark(0, 4, "text");
    const Element application = accessibility().applicationElement(editor.processIdentifier());
    const auto text = accessibility().copyElementAttribute(application, attribute::focusedUIElement);
    ASSERT_EQ(text.error, AXError::success);
    EXPECT_EQ(accessibility().performAction(*text.element, action::raise), AXError::actionUnsupported);
    EXPECT_EQ(accessibility().setAttribute(*text.element, attribute::main, true), AXError::attributeUnsupported);
    EXPECT_EQ(accessibility().setAttribute(*text.element, attribute::focused, true), AXError::success);
    EXPECT_EQ(accessibility().setAttribute(*text.element, attribute::focused, false), AXError::illegalArgument);
}

}  // namespace
}  // namespace lomaris::test
