#include "platform/linux/message_locale.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {
namespace {

TEST(MessageLocale, GivesTheTagsOfALocaleBestFirst) {
    struct Case {
        std::string_view locale;
        std::vector<std::string> expected;
    };
    const Case cases[] = {
        {"de_AT.UTF-8@euro", {"de_AT@euro", "de_AT", "de@euro", "de"}},
        {"de_AT.UTF-8", {"de_AT", "de"}},
        {"de_AT", {"de_AT", "de"}},
        {"sr@latin", {"sr@latin", "sr"}},
        {"nds.UTF-8", {"nds"}},
        {"eo", {"eo"}},
        {"C", {}},
        {"C.UTF-8", {}},
        {"POSIX", {}},
        {"", {}},
        {"_AT", {}},
        {"@euro", {}},
        {".UTF-8", {}},
    };
    for (const Case& tested : cases) {
        EXPECT_EQ(languageTags(tested.locale), tested.expected) << tested.locale;
    }
}

}  // namespace
}  // namespace lomaris::test
