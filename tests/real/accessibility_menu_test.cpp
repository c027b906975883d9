#include "accessibility/adapter/copy_command.h"
#include "platform/attributes.h"
#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/support/process.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

AttributeAnswer successOf(AttributeValue value) { return {AXError::success, std::move(value)}; }

/// The text on the clipboard, as another program reads it.
std::string clipboardText() {
    return runProcess({"xclip", "-out", "-selection", "clipboard", "-target", "UTF8_STRING"}).output;
}

class AccessibilityMenu : public testing::TestWithParam<EditorProgram> {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(GetParam()); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }

    Accessibility& accessibility() { return platform_->accessibility(); }

    std::vector<Element> childrenOf(const Element& element) {
        const AttributeAnswer answer = accessibility().copyAttribute(element, attribute::children);
        const auto* const children = std::get_if<std::vector<Element>>(&answer.value);
        return children == nullptr ? std::vector<Element>() : *children;
    }

    std::optional<CopyCommand> copyCommandOf(const Editor& editor) {
        return findCopyCommand(accessibility(), RunningApplication{editor.processIdentifier(), {}, {}});
    }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

TEST_P(AccessibilityMenu, HasOneMenuBelowEachTitleOfTheBar) {
    const Editor editor(GetParam(), "text");
    const Element application = accessibility().applicationElement(editor.processIdentifier());
    const auto bar = accessibility().copyElementAttribute(application, attribute::menuBar);
    ASSERT_EQ(bar.error, AXError::success);
    EXPECT_EQ(accessibility().copyAttribute(*bar.element, attribute::role), successOf(Text(u"AXMenuBar")));
    EXPECT_EQ(accessibility().processIdentifier(*bar.element), editor.processIdentifier());
    const std::vector<Element> titles = childrenOf(*bar.element);
    ASSERT_GT(titles.size(), 3U);
    EXPECT_EQ(accessibility().copyAttribute(titles[0], attribute::title), successOf(Text(u"File")));
    EXPECT_EQ(accessibility().copyAttribute(titles[1], attribute::title), successOf(Text(u"Edit")));
    for (const Element& title : titles) {
        EXPECT_EQ(accessibility().copyAttribute(title, attribute::role), successOf(Text(u"AXMenuBarItem")));
        const std::vector<Element> menus = childrenOf(title);
        ASSERT_EQ(menus.size(), 1U);
        EXPECT_EQ(accessibility().copyAttribute(menus.front(), attribute::role), successOf(Text(u"AXMenu")));
        EXPECT_FALSE(childrenOf(menus.front()).empty());
    }
}

TEST_P(AccessibilityMenu, CopiesWithItsCopyItem) {
    Editor editor(GetParam(), "one two\n");
    const auto before = copyCommandOf(editor);
    ASSERT_TRUE(before.has_value());
    EXPECT_EQ(before->isEnabled, false);
    const AttributeAnswer title = accessibility().copyAttribute(before->element, attribute::title);
    // One of the editors pads its titles with spaces.
    EXPECT_TRUE(std::get<Text>(title.value).starts_with(u"Copy"));
    editor.mark(4, 3, "two");
    std::optional<CopyCommand> command;
    ASSERT_TRUE(waitFor([&] {
        command = copyCommandOf(editor);
        return command && command->isEnabled == true;
    }));
    EXPECT_EQ(accessibility().copyAttribute(command->element, attribute::role), successOf(Text(u"AXMenuItem")));
    EXPECT_EQ(accessibility().performAction(command->element, action::press), AXError::success);
    EXPECT_TRUE(waitFor([] { return clipboardText() == "two"; }));
}

INSTANTIATE_TEST_SUITE_P(Editors, AccessibilityMenu, testing::Values(mousepad(), featherPad()),
                         [](const auto& param) { return param.param.name; });

}  // namespace
}  // namespace lomaris::test
