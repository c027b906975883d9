#include "accessibility/fallback/pasteboard_consumption_tracker.h"

#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

const PasteboardType plainText(pasteboard_type::string);

/// Records the data that a provider sets on it.
class RecordingItem final : public PromisedItem {
public:
    void setData(std::string_view bytes, const PasteboardType& type) override { given.emplace_back(type, bytes); }

    std::vector<std::pair<PasteboardType, Bytes>> given;
};

class ConsumptionTracker : public testing::Test {
protected:
    std::shared_ptr<PasteboardConsumptionTracker> stage(TextView text) {
        return stagePrivately(desktop.pasteboard(), desktop.scheduling(), text);
    }

    /// Another program reads a type at a moment.
    void readAt(Moment moment, const PasteboardType& type) {
        desktop.at(moment, [this, type] {
            desktop.readPasteboardAsAnotherProgram(
                type, [this](const std::optional<Bytes>& bytes) { readings.push_back(bytes.value_or("(nothing)")); });
        });
    }

    /// Runs the run loop and returns the moment at which the text is released. Returns nullopt after 5 s.
    std::optional<Moment> releasedAt(const std::shared_ptr<PasteboardConsumptionTracker>& tracker) {
        std::optional<Moment> released;
        tracker->whenReleasable(300ms, 2500ms, [&] { released = desktop.now(); });
        while (!released && desktop.now() < 5s) {
            desktop.scheduling().runLoopSlice(10ms);
        }
        return released;
    }

    SimulatedDesktop desktop;
    std::vector<std::string> readings;
};

TEST_F(ConsumptionTracker, StagesAPromisedTextAndTwoEmptyMarkers) {
    ASSERT_TRUE(stage(u"secret"));
    EXPECT_EQ(desktop.pasteboardContents(),
              (std::vector<StandingItem>{
                  {.data = {{"org.nspasteboard.ConcealedType", ""}, {"org.nspasteboard.TransientType", ""}},
                   .promised = {"public.utf8-plain-text"}}}));
}

TEST_F(ConsumptionTracker, IsNullIfThePasteboardRefusesTheWrite) {
    desktop.refusePasteboardWrites();
    EXPECT_EQ(stage(u"secret"), nullptr);
}

TEST_F(ConsumptionTracker, ProvidesTheTextAsUtf8OnEveryRequest) {
    const auto tracker = stage(u"h\u00e9llo \U0001f600");
    readAt(10ms, plainText);
    readAt(20ms, plainText);
    EXPECT_EQ(releasedAt(tracker), 300ms);
    EXPECT_EQ(readings, (std::vector<std::string>{"h\u00e9llo \U0001f600", "h\u00e9llo \U0001f600"}));
}

TEST_F(ConsumptionTracker, StagesAnEmptyTextTheSameWay) {
    ASSERT_TRUE(stage(u""));
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text());
}

TEST_F(ConsumptionTracker, ReleasesAfterTheMinimumIfReadImmediately) {
    const auto tracker = stage(u"text");
    readAt(1ms, plainText);
    EXPECT_EQ(releasedAt(tracker), 300ms);
}

TEST_F(ConsumptionTracker, ReleasesWhenTheTextIsReadLater) {
    const auto tracker = stage(u"text");
    readAt(700ms, plainText);
    EXPECT_EQ(releasedAt(tracker), 700ms);
}

TEST_F(ConsumptionTracker, ReleasesAfterTheGraceIfNeverRead) {
    const auto tracker = stage(u"text");
    EXPECT_EQ(releasedAt(tracker), 2500ms);
}

TEST_F(ConsumptionTracker, IgnoresReadsOfOtherTypes) {
    const auto tracker = stage(u"text");
    readAt(100ms, "org.nspasteboard.ConcealedType");
    readAt(100ms, "public.html");
    EXPECT_EQ(releasedAt(tracker), 2500ms);
    EXPECT_EQ(readings, (std::vector<std::string>{"", "(nothing)"}));
}

// A pasteboard requests only promised types, but the provider does not rely on that.
TEST_F(ConsumptionTracker, ProvidesNothingForATypeThatWasNotPromised) {
    const auto tracker = stage(u"text");
    RecordingItem item;
    tracker->provideData(item, "public.html");
    EXPECT_EQ(item.given, (std::vector<std::pair<PasteboardType, Bytes>>{}));
    EXPECT_EQ(releasedAt(tracker), 2500ms);
}

TEST_F(ConsumptionTracker, ReleasesOnlyWhenTheMainQueueRuns) {
    const auto tracker = stage(u"text");
    bool released = false;
    tracker->whenReleasable(300ms, 2500ms, [&] { released = true; });
    desktop.scheduling().sleep(10s);
    EXPECT_FALSE(released);
    desktop.scheduling().runLoopSlice(1ms);
    EXPECT_TRUE(released);
}

TEST_F(ConsumptionTracker, StartsTheGraceWithItsBlock) {
    const auto tracker = stage(u"text");
    desktop.scheduling().sleep(1s);
    EXPECT_EQ(releasedAt(tracker), 3500ms);
}

}  // namespace
}  // namespace lomaris
