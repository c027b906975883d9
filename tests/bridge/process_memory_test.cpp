#include "tests/bridge/process_world.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>

namespace lomaris {
namespace {

constexpr long kibibytesPerMebibyte = 1024;

/// Returns the greatest peak memory, in KiB, of the child processes that have ended.
long peakMemoryOfPrograms() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
}

TEST(ProcessMemory, IsAtMostTwiceTheSizeOfALargeRequest) {
    // Other programs produce the spaces, because memory of this program would count as memory of its child processes.
    const std::string pipeline = R"(head -c 67108864 /dev/zero | tr '\000' ' ' | "$0" replace-selection-request)";
    EXPECT_EQ(test::runProcess({"sh", "-c", pipeline, LOMARIS_TOOL}, test::withoutDesktop()),
              test::failure("Guarded replacement request is invalid JSON."));
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer uses memory of its own and retains freed memory";
#endif
    constexpr long restOfTheTool = 16;
    EXPECT_LE(peakMemoryOfPrograms(), (2 * 64 + restOfTheTool) * kibibytesPerMebibyte);
    // The tool read the whole request.
    EXPECT_GE(peakMemoryOfPrograms(), 64 * kibibytesPerMebibyte);
}

}  // namespace
}  // namespace lomaris
