#include "accessibility/model/capture_trace.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <thread>
#include <vector>

namespace lomaris {
namespace {

using Entries = std::vector<SelectionCaptureTrace::Entry>;
using Key = SelectionCaptureTrace::Key;

TEST(CaptureTrace, StartsWithSixZerosInOrder) {
    const SelectionCaptureTrace trace;
    const Entries expected = {{"route", 0},       {"error", 0},        {"copy_item", 0},
                              {"key_presses", 0}, {"menu_presses", 0}, {"web", 0}};
    EXPECT_EQ(trace.snapshot(), expected);
}

TEST(CaptureTrace, CountsThreeKeyPresses) {
    SelectionCaptureTrace trace;
    for (int press = 0; press < 3; ++press) {
        trace.increment(Key::keyPresses);
    }
    const Entries expected = {{"route", 0},       {"error", 0},        {"copy_item", 0},
                              {"key_presses", 3}, {"menu_presses", 0}, {"web", 0}};
    EXPECT_EQ(trace.snapshot(), expected);
}

TEST(CaptureTrace, KeepsEachRecordedValueUnderItsOwnName) {
    SelectionCaptureTrace trace;
    trace.record(Key::route, 2);
    trace.record(Key::error, 4);
    trace.record(Key::copyItem, 3);
    trace.increment(Key::menuPresses);
    trace.record(Key::web, 1);
    const Entries expected = {{"route", 2},       {"error", 4},        {"copy_item", 3},
                              {"key_presses", 0}, {"menu_presses", 1}, {"web", 1}};
    EXPECT_EQ(trace.snapshot(), expected);
}

TEST(CaptureTrace, NumbersTheNamedValuesFromOne) {
    using enum SelectionCaptureTrace::Route;
    using CopyItem = SelectionCaptureTrace::CopyItem;
    SelectionCaptureTrace trace;
    std::int64_t number = 0;
    for (const auto route : {direct, clipboardForWebContent, clipboardAfterFailure}) {
        trace.record(route);
        EXPECT_EQ(trace.snapshot().at(0).second, ++number);
    }
    number = 0;
    for (const auto failure : {ReadFailure::noTextSelected, ReadFailure::selectedTextUnavailable,
                               ReadFailure::focusedElementUnavailable, ReadFailure::other}) {
        trace.record(failure);
        EXPECT_EQ(trace.snapshot().at(1).second, ++number);
    }
    number = 0;
    for (const auto item : {CopyItem::notFound, CopyItem::usable, CopyItem::disabled}) {
        trace.record(item);
        EXPECT_EQ(trace.snapshot().at(2).second, ++number);
    }
    trace.recordWebContent();
    const Entries expected = {{"route", 3},       {"error", 4},        {"copy_item", 3},
                              {"key_presses", 0}, {"menu_presses", 0}, {"web", 1}};
    EXPECT_EQ(trace.snapshot(), expected);
}

TEST(CaptureTrace, IsAllZerosAfterReset) {
    SelectionCaptureTrace trace;
    trace.record(Key::route, 1);
    trace.increment(Key::keyPresses);
    trace.reset();
    EXPECT_EQ(trace.snapshot(), SelectionCaptureTrace().snapshot());
}

TEST(CaptureTrace, IsOneInstanceForTheProcess) {
    EXPECT_EQ(&SelectionCaptureTrace::shared(), &SelectionCaptureTrace::shared());
}

TEST(CaptureTrace, LosesNoCountIfThreadsWriteConcurrently) {
    SelectionCaptureTrace trace;
    constexpr int threadCount = 4;
    constexpr int countsPerThread = 10000;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&trace] {
            for (int count = 0; count < countsPerThread; ++count) {
                trace.increment(Key::keyPresses);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(trace.snapshot().at(3).second, threadCount * countsPerThread);
}

TEST(CaptureTraceDeathTest, EndsTheProcessIfACountWouldOverflow) {
    SelectionCaptureTrace trace;
    trace.record(Key::keyPresses, std::numeric_limits<std::int64_t>::max());
    EXPECT_DEATH(trace.increment(Key::keyPresses), "");
}

}  // namespace
}  // namespace lomaris
