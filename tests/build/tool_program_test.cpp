// Reads the built tool as a file, with binutils, and runs a program that is built like it.

#include "tests/support/process.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace lomaris::test {
namespace {

constexpr std::uintmax_t largestTool = 1572864;

bool has(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

/// What `readelf` says of the tool.
std::string readElf(const std::string& option) {
    ProcessOptions inEnglish;
    inEnglish.environment = {{"LC_ALL", "C"}};
    const ProcessResult result = runProcess({"readelf", "--wide", option, LOMARIS_TOOL}, inEnglish);
    if (result.status != 0) {
        throw std::runtime_error("readelf: " + result.error);
    }
    return result.output;
}

/// The first line with this word in it, empty where there is none.
std::string lineWith(const std::string& output, std::string_view word) {
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        if (has(line, word)) {
            return line;
        }
    }
    return "";
}

/// Why the tool is not the one that users get, empty where it is.
std::string whyNotAsReleased() {
    const std::string_view instruments = LOMARIS_INSTRUMENTS;
    if (!instruments.empty()) {
        return "this build is instrumented: " + std::string(instruments);
    }
    const std::string_view configuration = LOMARIS_CONFIGURATION;
    return configuration == "Release" ? "" : "this build is not optimised: " + std::string(configuration);
}

TEST(ToolProgram, IsIndependentOfItsPosition) {
    const std::string header = lineWith(readElf("--file-header"), "Type:");
    EXPECT_TRUE(has(header, "DYN")) << header;
    EXPECT_TRUE(has(lineWith(readElf("--dynamic"), "FLAGS_1"), "PIE"));
}

TEST(ToolProgram, HasItsTablesReadOnlyBeforeItRuns) {
    EXPECT_NE(lineWith(readElf("--program-headers"), "GNU_RELRO"), "");
    const std::string dynamic = readElf("--dynamic");
    EXPECT_TRUE(has(dynamic, "BIND_NOW") || has(lineWith(dynamic, "FLAGS_1"), "NOW")) << dynamic;
}

TEST(ToolProgram, HasAStackThatCannotBeExecuted) {
    const std::string stack = lineWith(readElf("--program-headers"), "GNU_STACK");
    EXPECT_TRUE(has(stack, " RW ")) << stack;
    EXPECT_FALSE(has(stack, "RWE")) << stack;
}

TEST(ToolProgram, GuardsItsStack) {
    // An archive of the project alone: what the tool links from elsewhere brings a guard of its own.
    const ProcessResult symbols = runProcess({"nm", "--undefined-only", LOMARIS_GUARDED_LIBRARY});
    ASSERT_EQ(symbols.status, 0) << symbols.error;
    EXPECT_TRUE(has(symbols.output, "__stack_chk_fail"));
}

TEST(ToolProgram, ChecksItsCallsOfTheSystemsLibrary) {
    if (const std::string reason = whyNotAsReleased(); !reason.empty()) {
        GTEST_SKIP() << reason;
    }
    EXPECT_EQ(runProcess({LOMARIS_OVERRUN, "8"}), (ProcessResult{0, "xxxxxxxx", ""}));
    EXPECT_EQ(runProcess({LOMARIS_OVERRUN, "9"}),
              (ProcessResult{-SIGABRT, "", "*** buffer overflow detected ***: terminated\n"}));
}

TEST(ToolProgram, IsSmall) {
    if (const std::string reason = whyNotAsReleased(); !reason.empty()) {
        GTEST_SKIP() << reason;
    }
    const TemporaryDirectory directory;
    const std::string stripped = (directory.path() / "tool").string();
    const ProcessResult result = runProcess({"strip", "-o", stripped, LOMARIS_TOOL});
    ASSERT_EQ(result.status, 0) << result.error;
    EXPECT_LE(std::filesystem::file_size(stripped), largestTool);
}

}  // namespace
}  // namespace lomaris::test
