#include "platform/linux/x11/clipboard/progress_deadline.h"

#include <gtest/gtest.h>

#include <chrono>

namespace lomaris::test {
namespace {

using namespace std::chrono_literals;

constexpr Moment begin = 20s;
constexpr Moment end = begin + 10s;

TEST(ProgressDeadline, GivesUpASilentOwnerAfterOneSecond) {
    ProgressDeadline progress(begin, end);
    EXPECT_EQ(progress.deadline(), begin + 500ms);
    EXPECT_TRUE(progress.beginStall(begin + 500ms));
    EXPECT_EQ(progress.deadline(), begin + 1s);
    EXPECT_FALSE(progress.beginStall(begin + 1s));
}

TEST(ProgressDeadline, RestartsAfterEachPieceBeforeAStall) {
    ProgressDeadline progress(begin, end);
    progress.noteProgress(begin + 400ms, true);
    EXPECT_EQ(progress.deadline(), begin + 900ms);
    EXPECT_TRUE(progress.beginStall(begin + 900ms));
    // The stall began at the time of the last piece.
    EXPECT_EQ(progress.deadline(), begin + 1400ms);
}

TEST(ProgressDeadline, GivesDeadConversionsOneSecondInAll) {
    ProgressDeadline progress(begin, end);
    EXPECT_TRUE(progress.beginStall(begin + 500ms));
    progress.noteProgress(begin + 500ms, false);
    EXPECT_EQ(progress.deadline(), begin + 1s);
    progress.noteProgress(begin + 500ms, false);
    EXPECT_EQ(progress.deadline(), begin + 1s);
    EXPECT_FALSE(progress.beginStall(begin + 1s));
}

TEST(ProgressDeadline, WaitsForALongTransferDespiteADeadConversion) {
    ProgressDeadline progress(begin, end);
    EXPECT_TRUE(progress.beginStall(begin + 500ms));
    progress.noteProgress(begin + 900ms, false);
    EXPECT_EQ(progress.deadline(), begin + 1400ms);
    progress.noteProgress(begin + 1300ms, false);
    EXPECT_EQ(progress.deadline(), begin + 1800ms);
}

TEST(ProgressDeadline, GivesASlowOwnerOneSecondForEachStep) {
    ProgressDeadline progress(begin, end);
    EXPECT_TRUE(progress.beginStall(begin + 500ms));
    progress.noteProgress(begin + 600ms, true);
    EXPECT_EQ(progress.deadline(), begin + 1600ms);
    progress.noteProgress(begin + 1200ms, false);
    EXPECT_EQ(progress.deadline(), begin + 2200ms);
}

TEST(ProgressDeadline, NeverExceedsTheEnd) {
    ProgressDeadline progress(begin, begin + 700ms);
    EXPECT_EQ(progress.deadline(), begin + 500ms);
    progress.noteProgress(begin + 300ms, true);
    EXPECT_EQ(progress.deadline(), begin + 700ms);
    EXPECT_FALSE(progress.beginStall(begin + 700ms));

    ProgressDeadline stalled(begin, begin + 700ms);
    EXPECT_TRUE(stalled.beginStall(begin + 500ms));
    EXPECT_EQ(stalled.deadline(), begin + 700ms);
}

}  // namespace
}  // namespace lomaris::test
