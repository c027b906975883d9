#include "platform/linux/process/file_contents.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>

namespace lomaris::test {
namespace {

TEST(FileContents, AreReadUpToALimit) {
    const TemporaryDirectory directory;
    const std::string path = (directory.path() / "file").string();
    const std::string contents = std::string(20000, 'a') + std::string(1, '\0') + "end";
    std::ofstream(path, std::ios::binary) << contents;
    EXPECT_EQ(readFile(path, 100000), contents);
    EXPECT_EQ(readFile(path, 20002), contents.substr(0, 20002));
    EXPECT_EQ(readFile(path, 0), "");
}

TEST(FileContents, AreAbsentWithoutAFileAndEmptyIfReadingFails) {
    const TemporaryDirectory directory;
    EXPECT_EQ(readFile((directory.path() / "none").string(), 10), std::nullopt);
    EXPECT_EQ(readFile(directory.path().string(), 10), "");
}

}  // namespace
}  // namespace lomaris::test
