#include "platform/keeping/pasteboard_keeping.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::keeping {
namespace {

using namespace std::chrono_literals;
using namespace event;

/// Passes events to `decide`, with `TimePassed` at each moment that a decision requests, and records the resulting
/// actions: "restores 100", "releases 100", "ends 100", with the moment in milliseconds.
class PasteboardKeeper : public testing::Test {
protected:
    void at(Moment moment, const Event& event) {
        passTimeUpTo(moment);
        now_ = moment;
        take(event);
    }

    /// Passes time until no decision requests a later moment, and returns all actions.
    std::vector<std::string> actions() {
        passTimeUpTo(Moment::max());
        return actions_;
    }

    /// Begins an operation that saves the clipboard and publishes its own contents, all at 0 ms.
    void beginAndPublish() {
        at(0ms, Began());
        at(0ms, Protected());
        at(0ms, Published());
    }

    [[nodiscard]] const State& state() const { return state_; }

private:
    void passTimeUpTo(Moment moment) {
        while (wakeAt_ && *wakeAt_ <= moment) {
            now_ = *wakeAt_;
            take(TimePassed());
        }
    }

    void take(const Event& event) {
        const bool held = state_.holds;
        const Decision decision = decide(state_, event, now_);
        state_ = decision.state;
        note(decision.restores, "restores");
        note(held && !state_.holds, "releases");
        note(decision.isDone, "ends");
        if (decision.wakeAt) {
            EXPECT_GT(*decision.wakeAt, now_) << "the keeper would loop without waiting";
        }
        wakeAt_ = decision.wakeAt;
    }

    void note(bool isDone, const std::string& action) {
        if (isDone) {
            actions_.push_back(action + ' ' +
                               std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(now_).count()));
        }
    }

    State state_;
    Moment now_{0};
    std::optional<Moment> wakeAt_;
    std::vector<std::string> actions_;
};

using Actions = std::vector<std::string>;

TEST_F(PasteboardKeeper, RestoresNothingIfThePartnerDiesBeforeItsFirstChange) {
    at(0ms, Began());
    at(1ms, Protected());
    at(2ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"releases 2", "ends 2"}));
}

TEST_F(PasteboardKeeper, RestoresImmediatelyIfThePartnerDiesBeforeTheCopyKey) {
    beginAndPublish();
    at(5ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"restores 5", "releases 5"}));
    EXPECT_EQ(state().owner, Owner::keeper);
}

TEST_F(PasteboardKeeper, HoldsUntilTheWaitOfTheCopyKeyIsOver) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(50ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"restores 50", "releases 1010"}));
}

TEST_F(PasteboardKeeper, RestoresOverTheTargetsLateCopy) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(50ms, PartnerGone());
    at(1009ms, OwnerChanged{Owner::target});
    EXPECT_EQ(actions(), (Actions{"restores 50", "restores 1009", "releases 1010"}));
}

TEST_F(PasteboardKeeper, RestoresOverEachLateCopyOfTheTarget) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(50ms, PartnerGone());
    at(100ms, OwnerChanged{Owner::target});
    at(200ms, OwnerChanged{Owner::target});
    EXPECT_EQ(actions(), (Actions{"restores 50", "restores 100", "restores 200", "releases 1010"}));
}

TEST_F(PasteboardKeeper, KeepsALaterCopyOfTheTarget) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(50ms, PartnerGone());
    at(1010ms, OwnerChanged{Owner::target});
    EXPECT_EQ(actions(), (Actions{"restores 50", "releases 1010", "ends 1010"}));
}

TEST_F(PasteboardKeeper, RestoresOverACopyOfTheTargetBeforeTheDeath) {
    beginAndPublish();
    at(10ms, CopyExpected{200ms});
    at(209ms, OwnerChanged{Owner::target});
    at(900ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"restores 900", "releases 900"}));
}

TEST_F(PasteboardKeeper, KeepsACopyOfAnotherProgramBeforeTheDeath) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(20ms, OwnerChanged{Owner::other});
    at(30ms, PartnerGone());
    at(40ms, OwnerChanged{Owner::target});
    EXPECT_EQ(actions(), (Actions{"releases 30", "ends 30", "ends 40"}));
}

TEST_F(PasteboardKeeper, KeepsACopyOfAnotherProgramAfterTheRestore) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(30ms, PartnerGone());
    at(40ms, OwnerChanged{Owner::other});
    at(50ms, OwnerChanged{Owner::target});
    EXPECT_EQ(actions(), (Actions{"restores 30", "releases 40", "ends 40", "ends 50"}));
}

TEST_F(PasteboardKeeper, KeepsACopyOfTheTargetWithoutACopyKey) {
    beginAndPublish();
    at(20ms, OwnerChanged{Owner::target});
    at(30ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"releases 30", "ends 30"}));
}

TEST_F(PasteboardKeeper, RestoresIfTheTargetQuitAfterItsCopy) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(20ms, OwnerChanged{Owner::target});
    at(25ms, OwnerChanged{Owner::nobody});
    at(1030ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"restores 1030", "releases 1030"}));
}

TEST_F(PasteboardKeeper, RestoresNothingAfterTheOperationEnded) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(20ms, OwnerChanged{Owner::target});
    at(30ms, Published());
    at(31ms, Ended());
    at(32ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"releases 31"}));
    EXPECT_EQ(state().owner, Owner::keeper);
}

TEST_F(PasteboardKeeper, EndsWhenAnotherProgramTakesOver) {
    beginAndPublish();
    at(31ms, Ended());
    at(32ms, PartnerGone());
    at(5000ms, OwnerChanged{Owner::other});
    EXPECT_EQ(actions(), (Actions{"releases 31", "ends 5000"}));
}

TEST_F(PasteboardKeeper, HoldsUntilThePastedTextIsReadAfterANormalEnd) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(12ms, Ended());
    at(13ms, PartnerGone());
    at(1000ms, TextRead());
    EXPECT_EQ(actions(), (Actions{"releases 1000"}));
}

TEST_F(PasteboardKeeper, HoldsForTheMinimumWaitIfThePastedTextIsReadBefore) {
    // The reader may be a clipboard manager.
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(12ms, Ended());
    at(100ms, TextRead());
    EXPECT_EQ(actions(), (Actions{"releases 310"}));
}

TEST_F(PasteboardKeeper, IgnoresAReadBeforeThePasteKey) {
    beginAndPublish();
    at(5ms, TextRead());
    at(10ms, PasteExpected{300ms, 2500ms});
    at(12ms, Ended());
    EXPECT_EQ(actions(), (Actions{"releases 2510"}));
}

TEST_F(PasteboardKeeper, HoldsAnUnreadPasteUntilItsGraceWaitIsOver) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(90ms, PasteExpected{300ms, 2500ms});
    at(92ms, Ended());
    at(93ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"releases 2590"}));
}

TEST_F(PasteboardKeeper, ReleasesImmediatelyIfThePastedTextWasReadLongBefore) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PasteExpected{300ms, 2500ms});
    at(12ms, TextRead());
    at(400ms, Ended());
    EXPECT_EQ(actions(), (Actions{"releases 400"}));
}

TEST_F(PasteboardKeeper, CountsAReadBetweenTheDeletionAndThePaste) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, TextRead());
    at(90ms, PasteExpected{300ms, 2500ms});
    at(92ms, Ended());
    EXPECT_EQ(actions(), (Actions{"releases 390"}));
}

TEST_F(PasteboardKeeper, HoldsUntilThePartnerRestoresAfterThePaste) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(100ms, TextRead());
    at(310ms, Published());
    at(311ms, Ended());
    EXPECT_EQ(actions(), (Actions{"releases 311"}));
}

TEST_F(PasteboardKeeper, ReleasesTheHoldOfAPartnerThatNeverRestores) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(100ms, TextRead());
    EXPECT_EQ(actions(), (Actions{"releases 3010"}));
    EXPECT_TRUE(state().isProtecting);
}

TEST_F(PasteboardKeeper, RestoresIfThePartnerDiesLongAfterItsPaste) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(100ms, TextRead());
    at(9000ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"releases 3010", "restores 9000"}));
}

TEST_F(PasteboardKeeper, RestoresAfterADeathOnceThePastedTextIsRead) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    at(1000ms, TextRead());
    EXPECT_EQ(actions(), (Actions{"restores 1000", "releases 1000"}));
}

TEST_F(PasteboardKeeper, RestoresAfterTheMinimumWaitAfterADeath) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    at(50ms, TextRead());
    EXPECT_EQ(actions(), (Actions{"restores 310", "releases 310"}));
}

TEST_F(PasteboardKeeper, RestoresAfterTheGraceWaitOfAnUnreadPasteAfterADeath) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"restores 2510", "releases 2510"}));
}

TEST_F(PasteboardKeeper, KeepsWhatTheUserCopiesAfterAPaste) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    at(100ms, OwnerChanged{Owner::target});
    EXPECT_EQ(actions(), (Actions{"releases 100", "ends 100"}));
}

TEST_F(PasteboardKeeper, IgnoresAReadOfAnEarlierText) {
    beginAndPublish();
    at(1ms, TextRead());
    at(2ms, Published());
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"restores 2510", "releases 2510"}));
}

TEST_F(PasteboardKeeper, RestoresIfThePartnerDiesInASecondReadBeforeAPaste) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(20ms, OwnerChanged{Owner::target});
    at(30ms, Published());
    at(40ms, Protected());
    at(50ms, Published());
    at(60ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"restores 60", "releases 1010"}));
}

TEST_F(PasteboardKeeper, RestoresIfThePartnerDiesAsItsNextOperationBegins) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(100ms, Began());
    at(101ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"restores 101", "releases 101"}));
}

TEST_F(PasteboardKeeper, ResetsForTheNextOperationOfItsPartner) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(50ms, Ended());
    at(100ms, Began());
    at(101ms, PartnerGone());
    EXPECT_EQ(actions(), (Actions{"releases 101"}));
    EXPECT_FALSE(state().isProtecting);
}

}  // namespace
}  // namespace lomaris::keeping
