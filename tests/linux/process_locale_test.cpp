#include "platform/linux/process/process_locale.h"

#include "tests/linux/fake_desktop.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {
namespace {

TEST(MessageLocale, HasLanguageTagsInOrderOfPreference) {
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

class ProcessLocale : public testing::Test {
protected:
    ProcessLocale() { clear(); }
    ~ProcessLocale() override { clear(); }
    ProcessLocale(const ProcessLocale&) = delete;
    ProcessLocale& operator=(const ProcessLocale&) = delete;

    static void clear() {
        for (const char* const name : {"LC_ALL", "LC_CTYPE", "LC_MESSAGES", "LANG"}) {
            unsetenv(name);
        }
    }
};

TEST_F(ProcessLocale, IsThatOfTheFirstVariableThatIsSet) {
    EXPECT_EQ(characterLanguageOfProcess(), "");
    EXPECT_EQ(languageTagsOfProcess(), std::vector<std::string>{});
    setenv("LANG", "tr_TR.UTF-8", 1);
    EXPECT_EQ(characterLanguageOfProcess(), "tr");
    EXPECT_EQ(languageTagsOfProcess(), (std::vector<std::string>{"tr_TR", "tr"}));
    setenv("LC_CTYPE", "az_AZ", 1);
    setenv("LC_MESSAGES", "de_AT", 1);
    EXPECT_EQ(characterLanguageOfProcess(), "az");
    EXPECT_EQ(languageTagsOfProcess(), (std::vector<std::string>{"de_AT", "de"}));
    setenv("LC_ALL", "C.UTF-8", 1);
    EXPECT_EQ(characterLanguageOfProcess(), "");
    EXPECT_EQ(languageTagsOfProcess(), std::vector<std::string>{});
    setenv("LC_ALL", "", 1);
    EXPECT_EQ(characterLanguageOfProcess(), "az");
}

TEST_F(ProcessLocale, DeterminesCaseInsensitiveComparison) {
    FixedWorkspace workspace;
    const auto accessibility = makeLinuxAccessibility(workspace);
    EXPECT_TRUE(accessibility->containsIgnoringCase(u"EDITOR", u"editor"));
    EXPECT_FALSE(accessibility->containsIgnoringCase(u"ED\u0130TOR", u"editor"));
    setenv("LANG", "tr_TR.UTF-8", 1);
    EXPECT_FALSE(accessibility->containsIgnoringCase(u"EDITOR", u"editor"));
    EXPECT_TRUE(accessibility->containsIgnoringCase(u"ED\u0130TOR", u"editor"));
}

}  // namespace
}  // namespace lomaris::test
