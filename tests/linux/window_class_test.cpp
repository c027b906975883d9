#include "platform/linux/x11/window_class.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace lomaris::test {
namespace {

using namespace std::string_view_literals;

TEST(WindowClass, ParsesTheProperty) {
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

}  // namespace
}  // namespace lomaris::test
