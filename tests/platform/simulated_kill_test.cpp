// A process that is killed: it runs no more code, and everything else continues.

#include "tests/platform/simulated_process_end.h"

#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class SimulatedKill : public SimulatedProcessEnd {
protected:
    std::function<void()> killIt() {
        return [this] { desktop.kill(); };
    }
};

TEST_F(SimulatedKill, EndsAWaitImmediately) {
    const auto guard = scheduling.onTermination([] { ADD_FAILURE() << "a clean-up ran"; });
    desktop.at(10ms, killIt());
    EXPECT_EQ(signalOf([this] { scheduling.runLoopSlice(50ms); }), SIGKILL);
    EXPECT_EQ(desktop.now(), 10ms);
    EXPECT_EQ(desktop.endedBySignal(), SIGKILL);
}

TEST_F(SimulatedKill, EndsACallThatWaitsForItsReply) {
    desktop.setLatencyOf("changeCount", 50ms);
    desktop.at(10ms, killIt());
    EXPECT_EQ(signalOf([this] { countChanges(); }), SIGKILL);
    EXPECT_EQ(desktop.now(), 10ms);
}

TEST_F(SimulatedKill, HappensBeforeTheNumberedCall) {
    desktop.beforeCall(2, killIt());
    EXPECT_EQ(signalOf([this] {
                  countChanges();
                  countChanges();
              }),
              SIGKILL);
    EXPECT_EQ(desktop.journal().size(), 1U);
}

TEST_F(SimulatedKill, IsNotDeferredByAGuard) {
    const auto guard = scheduling.onTermination([] { ADD_FAILURE() << "a clean-up ran"; });
    guard->holdOff();
    desktop.at(10ms, killIt());
    EXPECT_EQ(signalOf([this] { scheduling.sleep(50ms); }), SIGKILL);
}

TEST_F(SimulatedKill, ProvidesNoPromisedData) {
    const auto provider = promiseText(desktop);
    std::optional<Bytes> read = "not asked";
    desktop.readPasteboardAsAnotherProgram(stringType, [&](auto bytes) { read = std::move(bytes); });
    desktop.kill();
    EXPECT_EQ(read, std::nullopt);
    EXPECT_EQ(signalOf([this] { countChanges(); }), SIGKILL);
    desktop.endProcess();
    EXPECT_EQ(provider->asked, 0);
    EXPECT_EQ(desktop.pasteboardStringForOthers(), std::nullopt);
}

TEST_F(SimulatedKill, StopsAWriteToThePasteboardWithoutAThrow) {
    struct Restore {
        Pasteboard& pasteboard;
        ~Restore() {
            pasteboard.clearContents();
            EXPECT_FALSE(pasteboard.writeItems({}));
        }
    };
    desktop.userCopies(u"theirs");
    const auto contents = desktop.pasteboardContents();
    desktop.setLatencyOf("clearContents", 50ms);
    desktop.at(10ms, killIt());
    { const Restore restore{desktop.pasteboard()}; }
    EXPECT_EQ(desktop.now(), 10ms);
    EXPECT_EQ(desktop.pasteboardContents(), contents);
    EXPECT_EQ(signalOf([this] { countChanges(); }), SIGKILL);
    EXPECT_EQ(desktop.journal(), Lines{"0.000000000 clearContents()"});
}

TEST_F(SimulatedKill, InterruptsACleanUp) {
    desktop.setLatencyOf("clearContents", 50ms);
    desktop.userCopies(u"theirs");
    const auto contents = desktop.pasteboardContents();
    {
        const auto guard = scheduling.onTermination([this] {
            desktop.pasteboard().clearContents();
            countChanges();
        });
        desktop.terminate(SIGTERM);
        desktop.at(10ms, killIt());
        EXPECT_EQ(signalOf([this] { scheduling.sleep(1s); }), SIGKILL);
    }
    EXPECT_EQ(desktop.pasteboardContents(), contents);
    EXPECT_EQ(desktop.endedBySignal(), SIGKILL);
}

TEST_F(SimulatedKill, MayHappenDuringANormalEnd) {
    class Provider final : public PasteboardDataProvider {
    public:
        explicit Provider(Pasteboard& pasteboard) : pasteboard_(pasteboard) {}
        void provideData(PromisedItem& item, const PasteboardType& type) override {
            static_cast<void>(pasteboard_.changeCount());
            item.setData("promised", type);
        }

    private:
        Pasteboard& pasteboard_;
    };
    std::vector<NewPasteboardItem> items(1);
    items[0].promisedTypes.push_back(stringType);
    items[0].provider = std::make_shared<Provider>(desktop.pasteboard());
    desktop.pasteboard().clearContents();
    EXPECT_TRUE(desktop.pasteboard().writeItems(std::move(items)));
    desktop.beforeCall(desktop.journal().size() + 1, killIt());
    EXPECT_NO_THROW(desktop.endProcess());
    EXPECT_EQ(desktop.endedBySignal(), SIGKILL);
}

TEST_F(SimulatedKill, LeavesBackgroundBlocksWithoutEffect) {
    bool ran = false;
    scheduling.runInBackground([&] {
        scheduling.sleep(100ms);
        scheduling.runOnMainQueue([&ran] { ran = true; });
    });
    desktop.at(50ms, killIt());
    EXPECT_EQ(signalOf([this] { scheduling.runLoopSlice(1s); }), SIGKILL);
    desktop.endProcess();
    EXPECT_FALSE(ran);
}

TEST_F(SimulatedKill, DoesNotStopUserAndApplications) {
    const auto notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    const auto text = notes.addTextElement(u"fox", {0, 3});
    desktop.userCopies(u"theirs");
    desktop.at(10ms, killIt());
    desktop.at(20ms, [&] { desktop.perform(pastesInto(text).after(5ms)); });
    EXPECT_EQ(signalOf([this] { scheduling.sleep(1s); }), SIGKILL);
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"theirs");
}

TEST_F(SimulatedKill, DoesNothingToAProcessThatHasEnded) {
    desktop.terminate(SIGTERM);
    EXPECT_EQ(signalOf([this] { countChanges(); }), SIGTERM);
    desktop.kill();
    EXPECT_EQ(desktop.endedBySignal(), SIGTERM);
}

/// A second termination request during a call that waits for its reply; a guard defers the first request.
class SecondRequestToEnd : public SimulatedKill {
protected:
    /// Requests termination at 10 ms and 20 ms during a call of 50 ms. Returns the signal that ended the process and
    /// the time.
    std::pair<std::optional<int>, Moment> outcome() {
        desktop.setLatencyOf("changeCount", 50ms);
        desktop.at(10ms, tellToEnd(SIGTERM));
        desktop.at(20ms, tellToEnd(SIGINT));
        const auto signal = signalOf([this] {
            countChanges();
            scheduling.sleep(1s);
        });
        return {signal, desktop.now()};
    }
    using Outcome = std::pair<std::optional<int>, Moment>;

    int cleanUps = 0;
    std::unique_ptr<TerminationGuard> guard = scheduling.onTermination([this] { ++cleanUps; });
};

TEST_F(SecondRequestToEnd, KillsTheProcessIfThereIsAKeeper) {
    desktop.addKeeper();
    EXPECT_EQ(outcome(), Outcome(SIGINT, 20ms));
    EXPECT_EQ(cleanUps, 0);
}

TEST_F(SecondRequestToEnd, IsIgnoredWithoutAKeeper) {
    EXPECT_EQ(outcome(), Outcome(SIGTERM, 50ms));
    EXPECT_EQ(cleanUps, 1);
}

TEST_F(SecondRequestToEnd, IsIgnoredIfAGuardDefersTheEnd) {
    desktop.addKeeper();
    guard->holdOff();
    EXPECT_EQ(outcome(), Outcome(std::nullopt, 1050ms));
    EXPECT_EQ(cleanUps, 0);
    guard.reset();
    EXPECT_EQ(desktop.endedBySignal(), SIGTERM);
}

TEST_F(SecondRequestToEnd, InterruptsTheCleanUpOfTheFirst) {
    desktop.addKeeper();
    desktop.userCopies(u"theirs");
    const auto contents = desktop.pasteboardContents();
    guard = scheduling.onTermination([this] { desktop.pasteboard().clearContents(); });
    desktop.setLatencyOf("clearContents", 50ms);
    desktop.at(10ms, tellToEnd(SIGTERM));
    desktop.at(20ms, tellToEnd(SIGHUP));
    EXPECT_EQ(signalOf([this] { scheduling.sleep(1s); }), SIGHUP);
    EXPECT_EQ(desktop.now(), 20ms);
    EXPECT_EQ(desktop.pasteboardContents(), contents);
}

}  // namespace
}  // namespace lomaris::test
