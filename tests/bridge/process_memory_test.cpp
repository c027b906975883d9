#include "tests/bridge/process_world.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>

namespace lomaris {
namespace {

constexpr long kibibytesPerMebibyte = 1024;

/// The most memory that any program which this one started, and which has ended, ever had, in KiB.
long peakMemoryOfPrograms() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
}

TEST(ProcessMemory, IsAtMostTwiceARequestOf64MebibytesOfSpaces) {
    // The spaces come from other programs: what this one holds would count as memory of those that it starts.
    const std::string pipeline = R"(head -c 67108864 /dev/zero | tr '\000' ' ' | "$0" replace-selection-request)";
    EXPECT_EQ(test::runProcess({"sh", "-c", pipeline, LOMARIS_TOOL}, test::withoutDesktop()),
              test::failure("Guarded replacement request is invalid JSON."));
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer has memory of its own and keeps what is freed";
#endif
    constexpr long restOfTheTool = 16;
    EXPECT_LE(peakMemoryOfPrograms(), (2 * 64 + restOfTheTool) * kibibytesPerMebibyte);
    // The request was really read as a whole.
    EXPECT_GE(peakMemoryOfPrograms(), 64 * kibibytesPerMebibyte);
}

}  // namespace
}  // namespace lomaris
