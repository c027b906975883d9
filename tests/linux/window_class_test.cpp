#include "platform/linux/window_class.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace lomaris::test {
namespace {

using namespace std::string_view_literals;

TEST(WindowClass, TakesThePropertyApart) {
    struct Case {
        std::string_view bytes;
        WindowClass expected;
    };
    const Case cases[] = {
        {"Navigator\0firefox-esr\0"sv, {"Navigator", "firefox-esr"}},
        {"mousepad\0Mousepad"sv, {"mousepad", "Mousepad"}},
        {"mousepad\0"sv, {"mousepad", ""}},
        {"mousepad"sv, {"mousepad", ""}},
        {"\0Mousepad\0"sv, {"", "Mousepad"}},
        {"a\0b\0c\0"sv, {"a", "b"}},
        {"\0\0\0"sv, {"", ""}},
        {""sv, {"", ""}},
    };
    for (const Case& tested : cases) {
        EXPECT_EQ(windowClassFromProperty(tested.bytes), tested.expected) << testing::PrintToString(tested.bytes);
    }
}

TEST(WindowClass, KnowsTheIdentifiersOfBrowsersEditorsAndTerminals) {
    struct Case {
        std::string_view className;
        std::string_view identifier;
    };
    const Case cases[] = {
        {"firefox", "org.mozilla.firefox"},
        {"firefox-esr", "org.mozilla.firefox"},
        {"Google-chrome", "com.google.Chrome"},
        {"google-chrome", "com.google.Chrome"},
        {"Chromium", "org.chromium.Chromium"},
        {"Microsoft-edge", "com.microsoft.edgemac"},
        {"Brave-browser", "com.brave.Browser"},
        {"Opera", "com.operasoftware.Opera"},
        {"Code", "com.microsoft.VSCode"},
        {"Code - Insiders", "com.microsoft.VSCodeInsiders"},
        {"VSCodium", "com.vscodium"},
        {"Code - OSS", "com.visualstudio.code.oss"},
        {"code-oss", "com.visualstudio.code.oss"},
        {"Alacritty", "org.alacritty"},
        {"kitty", "net.kovidgoyal.kitty"},
    };
    for (const Case& tested : cases) {
        EXPECT_EQ(identifierOfWindowClass(tested.className), tested.identifier) << tested.className;
    }
}

TEST(WindowClass, KnowsNothingOfOtherClasses) {
    for (const std::string_view className :
         {""sv, "FeatherPad"sv, "firefo"sv, "firefoxx"sv, "Codes"sv, "org.mozilla.firefox"sv, "F\u0130refox"sv}) {
        EXPECT_EQ(identifierOfWindowClass(className), std::nullopt) << className;
    }
}

}  // namespace
}  // namespace lomaris::test
