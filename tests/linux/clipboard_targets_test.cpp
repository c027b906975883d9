#include "platform/linux/x11/clipboard/clipboard_targets.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace lomaris::test {
namespace {

using namespace std::string_view_literals;

TEST(ClipboardTargets, MapToTypes) {
    struct Case {
        std::string_view target;
        std::string_view type;
    };
    const Case cases[] = {
        {"UTF8_STRING", "public.utf8-plain-text"},
        {"STRING", "STRING"},
        {"text/plain;charset=utf-8", "text/plain;charset=utf-8"},
        {"org.nspasteboard.ConcealedType", "org.nspasteboard.ConcealedType"},
    };
    for (const Case& tested : cases) {
        EXPECT_EQ(typeOfTarget(tested.target), tested.type);
        EXPECT_EQ(targetOfType(tested.type), tested.target);
    }
}

TEST(ClipboardTargets, ExcludeTargetsWithoutContents) {
    for (const std::string_view target : {"UTF8_STRING"sv, "text/html"sv, "TEXT"sv, "targets"sv, "x"sv}) {
        EXPECT_TRUE(isContentsTarget(target)) << target;
    }
    for (const std::string_view target : {"TARGETS"sv, "MULTIPLE"sv, "TIMESTAMP"sv, "SAVE_TARGETS"sv, "DELETE"sv,
                                          "INSERT_SELECTION"sv, "INSERT_PROPERTY"sv, ""sv}) {
        EXPECT_FALSE(isContentsTarget(target)) << target;
    }
    EXPECT_TRUE(isContentsTarget(std::string(longestTargetName, 'x')));
    EXPECT_FALSE(isContentsTarget(std::string(longestTargetName + 1, 'x')));
}

TEST(ClipboardTargets, ConvertLatin1) {
    struct Case {
        std::string_view utf8;
        std::optional<std::string> latin1;
    };
    const Case cases[] = {
        {"", ""},
        {"plain\n", "plain\n"},
        {"\xc3\xa9\xc3\xbf", "\xe9\xff"},
        {"\xc2\x80", "\x80"},
        {"\xc4\x80", std::nullopt},
        {"\xe2\x82\xac", std::nullopt},
        {"\xf0\x9f\x98\x80", std::nullopt},
        {"ill-formed \xff", std::nullopt},
    };
    for (const Case& tested : cases) {
        EXPECT_EQ(latin1FromUtf8(tested.utf8), tested.latin1) << testing::PrintToString(tested.utf8);
        if (tested.latin1) {
            EXPECT_EQ(utf8FromLatin1(*tested.latin1), tested.utf8) << testing::PrintToString(tested.utf8);
        }
    }
}

}  // namespace
}  // namespace lomaris::test
