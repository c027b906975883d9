#include "platform/linux/applications/application_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

namespace lomaris::applications::test {
namespace {

using namespace std::string_view_literals;

std::string_view identifierOf(std::string_view className) {
    const Application* const application = findApplication(className);
    return application == nullptr ? "not in the table"sv : application->bundleIdentifier;
}

TEST(ApplicationTable, HasTheIdentifiersOfBrowsersEditorsAndTerminals) {
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
        {"ORG.WEZFURLONG.WEZTERM", "com.github.wez.wezterm"},
        {"XTerm", ""},
        {"Xfce4-terminal", ""},
    };
    for (const Case& tested : cases) {
        EXPECT_EQ(identifierOf(tested.className), tested.identifier) << tested.className;
    }
}

TEST(ApplicationTable, HasTheKeysOfEachKindOfApplication) {
    struct Case {
        std::string_view className;
        EditingKeys keys;
    };
    const Case cases[] = {
        {"firefox-esr", EditingKeys::control},
        {"Code", EditingKeys::control},
        {"Xfce4-terminal", EditingKeys::controlShiftToCopy},
        {"Gnome-terminal", EditingKeys::controlShiftToCopy},
        {"org.wezfurlong.wezterm", EditingKeys::controlShiftToCopy},
        {"XTerm", EditingKeys::none},
        {"UXTerm", EditingKeys::none},
        {"KOI8RXTerm", EditingKeys::none},
        {"URxvt", EditingKeys::none},
        {"konsole", EditingKeys::none},
        {"Emacs", EditingKeys::none},
        {"Gvim", EditingKeys::none},
    };
    for (const Case& tested : cases) {
        const Application* const application = findApplication(tested.className);
        ASSERT_NE(application, nullptr) << tested.className;
        EXPECT_EQ(application->keys, tested.keys) << tested.className;
    }
}

TEST(ApplicationTable, HasNoRowForOtherClasses) {
    for (const std::string_view className : {""sv, "FeatherPad"sv, "firefo"sv, "firefoxx"sv, "Codes"sv,
                                             "org.mozilla.firefox"sv, "F\u0130refox"sv, "XTerm2"sv}) {
        EXPECT_EQ(findApplication(className), nullptr) << className;
    }
}

TEST(ApplicationTable, HasEachClassOnceInLowerCase) {
    std::set<std::string_view> classNames;
    for (const Application& application : applicationTable()) {
        EXPECT_TRUE(classNames.insert(application.className).second) << application.className;
        EXPECT_EQ(findApplication(application.className), &application) << application.className;
    }
}

/// The classes in the rows of the table in the documentation that begin with these columns.
std::set<std::string> documentedClasses(const std::string& columns) {
    std::ifstream document(LOMARIS_LINUX_DOCUMENT);
    std::set<std::string> classNames;
    for (std::string line; std::getline(document, line);) {
        if (!line.starts_with(columns)) {
            continue;
        }
        std::istringstream cells(line);
        std::string cell;
        for (bool isCode = false; std::getline(cells, cell, '`'); isCode = !isCode) {
            if (isCode) {
                classNames.insert(cell);
            }
        }
    }
    return classNames;
}

std::set<std::string> classesWith(EditingKeys keys) {
    std::set<std::string> classNames;
    for (const Application& application : applicationTable()) {
        if (application.keys == keys) {
            classNames.emplace(application.className);
        }
    }
    return classNames;
}

TEST(ApplicationTable, MatchesTheDocumentation) {
    EXPECT_EQ(documentedClasses("| Control+C | Control+V | BackSpace | "), classesWith(EditingKeys::control));
    EXPECT_EQ(documentedClasses("| Control+Shift+C | none | none | "), classesWith(EditingKeys::controlShiftToCopy));
    EXPECT_EQ(documentedClasses("| none | none | none | "), classesWith(EditingKeys::none));
}

}  // namespace
}  // namespace lomaris::applications::test
