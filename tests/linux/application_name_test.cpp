#include "platform/linux/x11/application_name.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {
namespace {

/// Two data directories, removed at the end.
class ApplicationName : public testing::Test {
protected:
    void write(const std::string& directory, const std::string& file, std::string_view contents) {
        std::filesystem::create_directories(root_.path() / directory / "applications");
        std::ofstream(root_.path() / directory / "applications" / file) << contents;
    }

    [[nodiscard]] std::optional<std::string> nameOf(std::string_view entry) const {
        const std::vector<std::string> directories{(root_.path() / "own").string(), (root_.path() / "system").string()};
        return desktopEntryName(entry, directories, std::vector<std::string>{});
    }

private:
    TemporaryDirectory root_;
};

TEST_F(ApplicationName, IsThatOfTheFirstDirectoryWithTheEntry) {
    write("own", "both.desktop", "[Desktop Entry]\nType=Application\nName=Own\n");
    write("system", "both.desktop", "[Desktop Entry]\nType=Application\nName=System\n");
    write("system", "one.desktop", "[Desktop Entry]\nType=Application\nName=One\n");
    EXPECT_EQ(nameOf("both"), "Own");
    EXPECT_EQ(nameOf("one"), "One");
    EXPECT_EQ(nameOf("none"), std::nullopt);
}

TEST_F(ApplicationName, IsAbsentIfTheUserHasHiddenTheEntry) {
    write("own", "editor.desktop", "[Desktop Entry]\nType=Application\nName=Editor\nHidden=true\n");
    write("system", "editor.desktop", "[Desktop Entry]\nType=Application\nName=Editor\n");
    EXPECT_EQ(nameOf("editor"), std::nullopt);
}

TEST_F(ApplicationName, RejectsEntriesThatAreNotFileNames) {
    write("own", "editor.desktop", "[Desktop Entry]\nType=Application\nName=Editor\n");
    write("system", ".hidden.desktop", "[Desktop Entry]\nType=Application\nName=Hidden\n");
    ASSERT_EQ(nameOf("editor"), "Editor");
    using namespace std::string_view_literals;
    for (const std::string_view entry :
         {""sv, "."sv, ".."sv, "../applications/editor"sv, "/editor"sv, "./editor"sv, ".hidden"sv, "editor\0"sv}) {
        EXPECT_EQ(nameOf(entry), std::nullopt) << testing::PrintToString(entry);
    }
    EXPECT_EQ(nameOf(std::string(100000, 'a')), std::nullopt);
}

}  // namespace
}  // namespace lomaris::test
