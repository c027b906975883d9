#include "platform/linux/process/desktop_entry.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {
namespace {

constexpr std::string_view editor =
    "# The entry of an editor\n"
    "\n"
    "[Desktop Entry]\n"
    "Type=Application\n"
    "GenericName=Text Editor\n"
    "Name=Editor\n"
    "Name[de]=Schreiber\n"
    "Name[de_AT]=Schreiberling\n"
    "Name[sr@latin]=Uredjivac\n"
    "Name[sr]=Уређивач\n"
    "Exec=editor %F\n"
    "[Desktop Action New]\n"
    "Name=New Window\n"
    "Name[fr]=Nouvelle fenêtre\n";

TEST(DesktopEntry, HasTheNameInTheFirstKnownLanguage) {
    struct Case {
        std::vector<std::string> languages;
        std::string_view expected;
    };
    const Case cases[] = {
        {{}, "Editor"},
        {{"de_AT", "de"}, "Schreiberling"},
        {{"de_DE", "de"}, "Schreiber"},
        {{"de"}, "Schreiber"},
        {{"sr_RS@latin", "sr_RS", "sr@latin", "sr"}, "Uredjivac"},
        {{"sr_RS", "sr"}, "Уређивач"},
        {{"fr"}, "Editor"},
        {{"e"}, "Editor"},
    };
    for (const Case& tested : cases) {
        EXPECT_EQ(nameInDesktopEntry(editor, tested.languages), std::optional<std::string>(tested.expected))
            << testing::PrintToString(tested.languages);
    }
}

TEST(DesktopEntry, AcceptsUnusualSyntax) {
    struct Case {
        std::string_view contents;
        std::string_view expected;
    };
    const Case cases[] = {
        {"[Desktop Entry]\nName=Late Type\nType=Application", "Late Type"},
        {"[Desktop Entry]\r\nType = Application \r\nName =  Blanks around \r\n", "Blanks around"},
        {"[Desktop Entry]\nType=Application\nName=\\sOne\\tTwo\\nThree\\\\four\\q\\", " One\tTwo\nThree\\four\\q\\"},
        {"[Desktop Entry]\nType=Application\nName=First\nName=Second\n", "First"},
        {"[Desktop Entry]\nType=Application\nName[]=Odd\nName[de=Odd\nNameless=Odd\nName=A=B\n", "A=B"},
        {"[Desktop Entry]\nType=Application\nHidden=false\nNoDisplay=true\nName=Shown\n", "Shown"},
        {"[Other]\nName=Other\n[Desktop Entry]\nType=Application\nName=Own\n", "Own"},
    };
    for (const Case& tested : cases) {
        EXPECT_EQ(nameInDesktopEntry(tested.contents, {}), std::optional<std::string>(tested.expected))
            << tested.contents;
    }
}

TEST(DesktopEntry, HasNoNameUnlessItIsAnApplication) {
    for (const std::string_view contents : {
             "",
             "\n\n",
             "Type=Application\nName=No group\n",
             "[Desktop Entry]\nName=No type\n",
             "[Desktop Entry]\nType=Link\nName=A link\n",
             "[Desktop Entry]\nType=Application\n",
             "[Desktop Entry]\nType=Application\nName=\n",
             "[Desktop Entry]\nType=Application\nName=Deleted\nHidden=true\n",
             "[Desktop Entry\nType=Application\nName=Broken\n",
             "[Desktop Entry]\nType=Application\n#Name=A comment\n",
         }) {
        EXPECT_EQ(nameInDesktopEntry(contents, {}), std::nullopt) << contents;
    }
}

}  // namespace
}  // namespace lomaris::test
