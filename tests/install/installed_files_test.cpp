#include "tests/support/process.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {
namespace {

const std::filesystem::path prefix = LOMARIS_PREFIX;
const std::string libraries = LOMARIS_LIBRARY_FOLDER;
const std::string package = libraries + "/cmake/LomarisMacOSAccessibility";
const std::string headers = "include/lomaris-macos-bridge";

/// Returns all installed files below a folder, as sorted paths relative to the prefix.
std::vector<std::string> filesIn(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(prefix / folder)) {
        if (!entry.is_directory()) {
            files.push_back(entry.path().lexically_relative(prefix).string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string contentsOf(const std::filesystem::path& path) {
    std::ostringstream contents;
    contents << std::ifstream(path, std::ios::binary).rdbuf();
    return contents.str();
}

bool isPathCharacter(char before) {
    return std::isalnum(static_cast<unsigned char>(before)) != 0 ||
           std::string_view("._-/").find(before) != std::string_view::npos;
}

/// True if `contents` contains this absolute path, not only as the end of another path.
bool containsPath(const std::string& contents, std::string_view path) {
    for (auto at = contents.find(path); at != std::string::npos; at = contents.find(path, at + 1)) {
        if (at == 0 || !isPathCharacter(contents[at - 1])) {
            return true;
        }
    }
    return false;
}

void expectNoPathOfThisBuildIn(const std::string& file, const std::filesystem::path& path) {
    const std::string contents = contentsOf(path);
    EXPECT_FALSE(contents.empty()) << file;
    EXPECT_FALSE(containsPath(contents, LOMARIS_SOURCE_DIRECTORY)) << file;
    EXPECT_FALSE(containsPath(contents, LOMARIS_BUILD_DIRECTORY)) << file;
}

TEST(InstalledCopy, HasOnlyTheToolAndTheLibraries) {
    EXPECT_EQ(filesIn("bin"), (std::vector<std::string>{"bin/lomaris-macos-bridge"}));
    std::vector<std::string> archives = filesIn(libraries);
    std::erase_if(archives, [](const std::string& file) { return file.starts_with(package); });
    EXPECT_EQ(archives, (std::vector<std::string>{
                            libraries + "/liblomaris_accessibility.a", libraries + "/liblomaris_json.a",
                            libraries + "/liblomaris_keeping.a", libraries + "/liblomaris_native_platform.a",
                            libraries + "/liblomaris_posix.a", libraries + "/liblomaris_text.a"}));
    const std::vector<std::string> keepers = LOMARIS_KEEPERS;
    for (const std::string& keeper : keepers) {
        EXPECT_EQ(filesIn("libexec"), std::vector<std::string>{keeper});
    }
    const int folders = keepers.empty() ? 3 : 4;
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(prefix), {}), folders) << "there are other folders";
}

TEST(InstalledCopy, HasEveryHeaderThatItsHeadersInclude) {
    const std::vector<std::string> installed = filesIn(headers);
    const auto isInstalled = [&installed](const std::string& header) {
        return std::find(installed.begin(), installed.end(), headers + "/" + header) != installed.end();
    };
    EXPECT_TRUE(isInstalled("accessibility/service/accessibility_service.h"));
    EXPECT_TRUE(isInstalled("platform/native_platform.h"));
    for (const std::string& header : installed) {
        std::ifstream file(prefix / header);
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("#include \"")) {
                EXPECT_TRUE(isInstalled(line.substr(10, line.rfind('"') - 10))) << header << ": " << line;
            }
        }
    }
}

TEST(InstalledCopy, HasNoTextFileWithAPathOfTheBuild) {
    for (const std::string& folder : {headers, package}) {
        for (const std::string& file : filesIn(folder)) {
            expectNoPathOfThisBuildIn(file, prefix / file);
        }
    }
}

TEST(InstalledCopy, HasNoProgramWithAPathOfTheBuild) {
    if (!std::string_view(LOMARIS_INSTRUMENTS).empty()) {
        GTEST_SKIP() << LOMARIS_INSTRUMENTS << " writes the paths of the sources into every program";
    }
    const TemporaryDirectory directory;
    const std::string stripped = (directory.path() / "stripped").string();
    std::vector<std::string> programs = filesIn(libraries);
    std::erase_if(programs, [](const std::string& file) { return !file.ends_with(".a"); });
    programs.emplace_back("bin/lomaris-macos-bridge");
    for (const std::string& file : programs) {
        // The debug information of a debug build may contain the paths of the sources.
        const ProcessResult result = runProcess({LOMARIS_STRIP, "-S", "-o", stripped, (prefix / file).string()});
        ASSERT_EQ(result.status, 0) << result.error;
        expectNoPathOfThisBuildIn(file, stripped);
    }
}

}  // namespace
}  // namespace lomaris::test
