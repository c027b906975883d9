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

/// Plays events to the keeper at moments, with `TimePassed` at each moment that a decision names, and writes down what
/// it does: "restores 100", "releases 100", "ends 100", with the moment in milliseconds.
class PasteboardKeeper : public testing::Test {
protected:
    void at(Moment moment, const Event& event) {
        passTimeUpTo(moment);
        now_ = moment;
        take(event);
    }

    /// Lets time go by until nothing more is to come.
    std::vector<std::string> deeds() {
        passTimeUpTo(Moment::max());
        return deeds_;
    }

    /// An operation that has saved the clipboard and put its own contents on it at 0.
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
            EXPECT_GT(*decision.wakeAt, now_) << "it would turn without rest";
        }
        wakeAt_ = decision.wakeAt;
    }

    void note(bool isDone, const std::string& deed) {
        if (isDone) {
            deeds_.push_back(deed + ' ' +
                             std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(now_).count()));
        }
    }

    State state_;
    Moment now_{0};
    std::optional<Moment> wakeAt_;
    std::vector<std::string> deeds_;
};

using Deeds = std::vector<std::string>;

TEST_F(PasteboardKeeper, RestoresNothingIfThePartnerDiesBeforeItsFirstChange) {
    at(0ms, Began());
    at(1ms, Protected());
    at(2ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"releases 2", "ends 2"}));
}

TEST_F(PasteboardKeeper, RestoresAtOnceIfThePartnerDiesBeforeTheCopyKey) {
    beginAndPublish();
    at(5ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"restores 5", "releases 5"}));
    EXPECT_EQ(state().owner, Owner::keeper);
}

TEST_F(PasteboardKeeper, HoldsUntilTheWaitOfTheCopyKeyIsOver) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(50ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"restores 50", "releases 1010"}));
}

TEST_F(PasteboardKeeper, RestoresOverTheTargetsLateCopy) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(50ms, PartnerGone());
    at(1009ms, OwnerChanged{Owner::target});
    EXPECT_EQ(deeds(), (Deeds{"restores 50", "restores 1009", "releases 1010"}));
}

TEST_F(PasteboardKeeper, RestoresOverEachLateCopyOfTheTarget) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(50ms, PartnerGone());
    at(100ms, OwnerChanged{Owner::target});
    at(200ms, OwnerChanged{Owner::target});
    EXPECT_EQ(deeds(), (Deeds{"restores 50", "restores 100", "restores 200", "releases 1010"}));
}

TEST_F(PasteboardKeeper, LeavesALaterCopyOfTheTargetAlone) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(50ms, PartnerGone());
    at(1010ms, OwnerChanged{Owner::target});
    EXPECT_EQ(deeds(), (Deeds{"restores 50", "releases 1010", "ends 1010"}));
}

TEST_F(PasteboardKeeper, RestoresOverACopyThatTheTargetMadeBeforeTheDeath) {
    beginAndPublish();
    at(10ms, CopyExpected{200ms});
    at(209ms, OwnerChanged{Owner::target});
    at(900ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"restores 900", "releases 900"}));
}

TEST_F(PasteboardKeeper, LeavesWhatAnotherProgramCopiedBeforeTheDeathAlone) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(20ms, OwnerChanged{Owner::other});
    at(30ms, PartnerGone());
    at(40ms, OwnerChanged{Owner::target});
    EXPECT_EQ(deeds(), (Deeds{"releases 30", "ends 30", "ends 40"}));
}

TEST_F(PasteboardKeeper, LeavesWhatAnotherProgramCopiesAfterTheRestoreAlone) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(30ms, PartnerGone());
    at(40ms, OwnerChanged{Owner::other});
    at(50ms, OwnerChanged{Owner::target});
    EXPECT_EQ(deeds(), (Deeds{"restores 30", "releases 40", "ends 40", "ends 50"}));
}

TEST_F(PasteboardKeeper, LeavesACopyOfTheTargetAloneThatNoKeyCaused) {
    beginAndPublish();
    at(20ms, OwnerChanged{Owner::target});
    at(30ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"releases 30", "ends 30"}));
}

TEST_F(PasteboardKeeper, RestoresIfTheTargetDiedWithItsCopy) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(20ms, OwnerChanged{Owner::target});
    at(25ms, OwnerChanged{Owner::nobody});
    at(1030ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"restores 1030", "releases 1030"}));
}

TEST_F(PasteboardKeeper, RestoresNothingAfterTheOperationEnded) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(20ms, OwnerChanged{Owner::target});
    at(30ms, Published());
    at(31ms, Ended());
    at(32ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"releases 31"}));
    EXPECT_EQ(state().owner, Owner::keeper);
}

TEST_F(PasteboardKeeper, EndsWhenAnotherProgramTakesOver) {
    beginAndPublish();
    at(31ms, Ended());
    at(32ms, PartnerGone());
    at(5000ms, OwnerChanged{Owner::other});
    EXPECT_EQ(deeds(), (Deeds{"releases 31", "ends 5000"}));
}

TEST_F(PasteboardKeeper, HoldsUntilThePastedTextIsReadAfterANormalEnd) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(12ms, Ended());
    at(13ms, PartnerGone());
    at(1000ms, TextRead());
    EXPECT_EQ(deeds(), (Deeds{"releases 1000"}));
}

TEST_F(PasteboardKeeper, HoldsForTheMinimumWaitEvenIfThePastedTextIsReadBefore) {
    // The reader may be a clipboard manager.
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(12ms, Ended());
    at(100ms, TextRead());
    EXPECT_EQ(deeds(), (Deeds{"releases 310"}));
}

TEST_F(PasteboardKeeper, HoldsIfTheTextWasReadOnlyBeforeThePasteKey) {
    beginAndPublish();
    at(5ms, TextRead());
    at(10ms, PasteExpected{300ms, 2500ms});
    at(12ms, Ended());
    EXPECT_EQ(deeds(), (Deeds{"releases 2510"}));
}

TEST_F(PasteboardKeeper, HoldsAnUnreadPasteUntilItsGraceWaitIsOver) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(90ms, PasteExpected{300ms, 2500ms});
    at(92ms, Ended());
    at(93ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"releases 2590"}));
}

TEST_F(PasteboardKeeper, ReleasesAtOnceIfThePastedTextWasReadLongBeforeTheEnd) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PasteExpected{300ms, 2500ms});
    at(12ms, TextRead());
    at(400ms, Ended());
    EXPECT_EQ(deeds(), (Deeds{"releases 400"}));
}

TEST_F(PasteboardKeeper, CountsAReadBetweenTheDeletionAndThePaste) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, TextRead());
    at(90ms, PasteExpected{300ms, 2500ms});
    at(92ms, Ended());
    EXPECT_EQ(deeds(), (Deeds{"releases 390"}));
}

TEST_F(PasteboardKeeper, HoldsForAPartnerThatWillRestoreAfterThePaste) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(100ms, TextRead());
    at(310ms, Published());
    at(311ms, Ended());
    EXPECT_EQ(deeds(), (Deeds{"releases 311"}));
}

TEST_F(PasteboardKeeper, ReleasesTheHoldOfAPartnerThatNeverRestores) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(100ms, TextRead());
    EXPECT_EQ(deeds(), (Deeds{"releases 3010"}));
    EXPECT_TRUE(state().isProtecting);
}

TEST_F(PasteboardKeeper, RestoresForAPartnerThatDiesLongAfterItsPaste) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(100ms, TextRead());
    at(9000ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"releases 3010", "restores 9000"}));
}

TEST_F(PasteboardKeeper, RestoresAfterADeathOnceThePastedTextIsRead) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    at(1000ms, TextRead());
    EXPECT_EQ(deeds(), (Deeds{"restores 1000", "releases 1000"}));
}

TEST_F(PasteboardKeeper, RestoresNotBeforeTheMinimumWaitAfterADeath) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    at(50ms, TextRead());
    EXPECT_EQ(deeds(), (Deeds{"restores 310", "releases 310"}));
}

TEST_F(PasteboardKeeper, RestoresAfterADeathWhenTheGraceWaitOfAnUnreadPasteIsOver) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"restores 2510", "releases 2510"}));
}

TEST_F(PasteboardKeeper, LeavesWhatTheUserCopiesAfterAPasteAlone) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    at(100ms, OwnerChanged{Owner::target});
    EXPECT_EQ(deeds(), (Deeds{"releases 100", "ends 100"}));
}

TEST_F(PasteboardKeeper, ForgetsThatAnEarlierTextWasRead) {
    beginAndPublish();
    at(1ms, TextRead());
    at(2ms, Published());
    at(10ms, PasteExpected{300ms, 2500ms});
    at(11ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"restores 2510", "releases 2510"}));
}

TEST_F(PasteboardKeeper, RestoresIfThePartnerDiesInTheRereadBeforeAPaste) {
    beginAndPublish();
    at(10ms, CopyExpected{1000ms});
    at(20ms, OwnerChanged{Owner::target});
    at(30ms, Published());
    at(40ms, Protected());
    at(50ms, Published());
    at(60ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"restores 60", "releases 1010"}));
}

TEST_F(PasteboardKeeper, RestoresWhatAPasteSavedIfThePartnerDiesAsItsNextOperationBegins) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(100ms, Began());
    at(101ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"restores 101", "releases 101"}));
}

TEST_F(PasteboardKeeper, BeginsTheNextOperationOfItsPartnerAnew) {
    beginAndPublish();
    at(10ms, PasteExpected{300ms, 2500ms});
    at(50ms, Ended());
    at(100ms, Began());
    at(101ms, PartnerGone());
    EXPECT_EQ(deeds(), (Deeds{"releases 101"}));
    EXPECT_FALSE(state().isProtecting);
}

}  // namespace
}  // namespace lomaris::keeping
