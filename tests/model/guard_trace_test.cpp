#include "accessibility/model/guard_trace.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

namespace lomaris {
namespace {

using Entries = std::vector<ReplacementGuardTrace::Entry>;
using Reason = ReplacementGuardTrace::Reason;

TEST(GuardTrace, StartsWithFourZerosInOrder) {
    const ReplacementGuardTrace trace;
    const Entries expected = {{"reason", 0}, {"error", 0}, {"expected_chars", 0}, {"current_chars", 0}};
    EXPECT_EQ(trace.snapshot(), expected);
}

TEST(GuardTrace, KeepsEachRecordedValueUnderItsOwnName) {
    ReplacementGuardTrace trace;
    trace.record({.reason = Reason::textChanged,
                  .error = ReadFailure::selectedTextUnavailable,
                  .expectedCharacters = 3,
                  .currentCharacters = 7});
    const Entries expected = {{"reason", 4}, {"error", 2}, {"expected_chars", 3}, {"current_chars", 7}};
    EXPECT_EQ(trace.snapshot(), expected);
}

TEST(GuardTrace, NumbersTheReasonsFromOneToFive) {
    const std::vector<Reason> reasons = {Reason::notFrontmost, Reason::rereadFailed, Reason::applicationChanged,
                                         Reason::textChanged, Reason::activityOrRange};
    ReplacementGuardTrace trace;
    std::int64_t number = 0;
    for (const Reason reason : reasons) {
        trace.record({.reason = reason});
        const Entries expected = {{"reason", ++number}, {"error", 0}, {"expected_chars", 0}, {"current_chars", 0}};
        EXPECT_EQ(trace.snapshot(), expected);
    }
}

TEST(GuardTrace, ReplacesAnEarlierRecordCompletely) {
    ReplacementGuardTrace trace;
    trace.record({.reason = Reason::textChanged,
                  .error = ReadFailure::selectedTextUnavailable,
                  .expectedCharacters = 3,
                  .currentCharacters = 7});
    trace.record({.reason = Reason::notFrontmost});
    const Entries expected = {{"reason", 1}, {"error", 0}, {"expected_chars", 0}, {"current_chars", 0}};
    EXPECT_EQ(trace.snapshot(), expected);
}

TEST(GuardTrace, IsAllZerosAfterReset) {
    ReplacementGuardTrace trace;
    trace.record({.reason = Reason::textChanged,
                  .error = ReadFailure::selectedTextUnavailable,
                  .expectedCharacters = 3,
                  .currentCharacters = 7});
    trace.reset();
    EXPECT_EQ(trace.snapshot(), ReplacementGuardTrace().snapshot());
}

TEST(GuardTrace, IsOneInstanceForTheProcess) {
    EXPECT_EQ(&ReplacementGuardTrace::shared(), &ReplacementGuardTrace::shared());
}

TEST(GuardTrace, ShowsOnlyWholeRecordsIfThreadsWriteConcurrently) {
    ReplacementGuardTrace trace;
    constexpr int threadCount = 4;
    constexpr int roundsPerThread = 2000;
    std::vector<std::thread> writers;
    for (int thread = 1; thread <= threadCount; ++thread) {
        writers.emplace_back([&trace, thread] {
            for (int round = 0; round < roundsPerThread; ++round) {
                trace.record({.reason = Reason::textChanged,
                              .error = static_cast<ReadFailure>(thread),
                              .expectedCharacters = thread,
                              .currentCharacters = thread});
                if (round % 16 == 0) {
                    trace.reset();
                }
            }
        });
    }
    int mixed = 0;
    for (int round = 0; round < roundsPerThread; ++round) {
        const Entries entries = trace.snapshot();
        const std::int64_t number = entries.at(1).second;
        const std::int64_t reason = number == 0 ? 0 : 4;
        const Entries whole = {
            {"reason", reason}, {"error", number}, {"expected_chars", number}, {"current_chars", number}};
        mixed += entries == whole ? 0 : 1;
    }
    for (auto& writer : writers) {
        writer.join();
    }
    EXPECT_EQ(mixed, 0);
}

}  // namespace
}  // namespace lomaris
