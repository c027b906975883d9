#include "platform/linux/atspi/menu_shortcut.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>
#include <vector>

namespace lomaris {
namespace {

TEST(MenuShortcut, ParsesTheBindingsOfToolkits) {
    struct Case {
        std::string_view binding;
        MenuShortcut shortcut;
    };
    const std::vector<Case> cases{
        {"c;<Alt>e:c;<Primary>c", {u"c", 0}},
        {";;<Primary>c", {u"c", 0}},
        {";;c", {u"c", 8}},
        {"c;<Alt>e:c;<Control>C", {u"C", 0}},
        {"<Alt>e;<Alt>e;<Primary>e", {u"e", 0}},
        {"p;<Alt>e:p;<Primary><Shift>p", {u"p", 1}},
        {"p;<Alt>e:p;<Shift><Control><Alt>p", {u"p", 3}},
        {"p;<Alt>e:p;<Alt>p", {u"p", 10}},
        {"p;<Alt>e:p;<Super>p", {u"p", 12}},
        {"p;<Alt>e:p;<Super><Control>p", {u"p", 4}},
        {"<Control>c", {u"c", 0}},
        {"<Control><", {u"<", 0}},
        {"<", {u"<", 8}},
        {"Ctrl+C", {u"C", 0}},
        {"Ctrl+C;Ctrl+Ins", {u"C", 0}},
        {"Ctrl+C;Ctrl+Ins;F16", {u"C", 0}},
        {"Ctrl+Shift+C", {u"C", 1}},
        {"Ctrl+Alt+P", {u"P", 2}},
        {"Meta+C", {u"C", 12}},
        {"Alt+E", {u"E", 10}},
        {"Ctrl++", {u"+", 0}},
        {"+", {u"+", 8}},
        {"C", {u"C", 8}},
        {"Ctrl+\xD0\xA1", {u"\u0421", 0}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(menuShortcutFromKeyBinding(each.binding), each.shortcut) << each.binding;
    }
}

TEST(MenuShortcut, IsAbsentIfThereIsNoneOrItIsNotSupported) {
    const std::vector<std::string_view> bindings{
        "",          ";;",  "c;<Alt>e:c;", "f;<Alt>f;", "<Primary>",        "<Primary>Page_Up",
        "<Primaryc", "<>c", "Ctrl+",       "F11",       "c;<Alt>e:c;<Fn>c", "Fn+C",
        "Ctrl+Ins",  "++C", "Ctrl",
    };
    for (const std::string_view binding : bindings) {
        EXPECT_EQ(menuShortcutFromKeyBinding(binding), std::nullopt) << binding;
    }
}

}  // namespace
}  // namespace lomaris
