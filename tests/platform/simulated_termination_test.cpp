// Termination requests to this process.

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/platform/simulated_process_end.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

TEST_F(SimulatedProcessEnd, NextCallIsNotMadeWithoutAGuard) {
    desktop.beforeCall(2, tellToEnd());
    EXPECT_EQ(signalOf([this] {
                  countChanges();
                  countChanges();
              }),
              15);
    EXPECT_EQ(desktop.endedBySignal(), 15);
    EXPECT_EQ(desktop.journal(), (Lines{"0.000000000 changeCount() -> 100"}));
}

TEST_F(SimulatedProcessEnd, WaitEndsAtTheMomentOfTheSignalWithoutAGuard) {
    struct Case {
        const char* name;
        std::function<void(SimulatedDesktop&)> wait;
    };
    for (const Case& each : {
             Case{"sleep", [](SimulatedDesktop& d) { d.scheduling().sleep(milliseconds(100)); }},
             Case{"slice", [](SimulatedDesktop& d) { d.scheduling().runLoopSlice(milliseconds(100)); }},
             Case{"answer",
                  [](SimulatedDesktop& d) {
                      d.setLatency(milliseconds(100));
                      static_cast<void>(d.accessibility().copyAttribute(d.systemWide().element(), attribute::role));
                  }},
         }) {
        SimulatedDesktop waiting;
        waiting.at(milliseconds(37), [&waiting] { waiting.terminate(2); });
        EXPECT_EQ(signalOf([&] { each.wait(waiting); }), 2) << each.name;
        EXPECT_EQ(waiting.now(), milliseconds(37)) << each.name;
        EXPECT_EQ(waiting.endedBySignal(), 2) << each.name;
    }
}

TEST_F(SimulatedProcessEnd, AGuardDefersItUntilTheNextWait) {
    const auto guard = scheduling.onTermination([this] { desktop.pasteboard().clearContents(); });
    desktop.beforeCall(2, tellToEnd());
    EXPECT_EQ(signalOf([this] {
                  countChanges();
                  countChanges();
                  scheduling.sleep(milliseconds(100));
                  countChanges();
              }),
              15);
    EXPECT_EQ(desktop.now(), Moment(0));
    EXPECT_EQ(desktop.journal(), (Lines{
                                     "0.000000000 onTermination()",
                                     "0.000000000 changeCount() -> 100",
                                     "0.000000000 changeCount() -> 100",
                                     "0.000000000 sleep(0.100000000)",
                                     "0.000000000 clearContents()",
                                 }));
}

TEST_F(SimulatedProcessEnd, AGuardAllowsItDuringAWait) {
    for (const bool turns : {false, true}) {
        SimulatedDesktop waiting;
        const auto guard = waiting.scheduling().onTermination([&] { waiting.pasteboard().clearContents(); });
        waiting.at(milliseconds(37), [&] { waiting.terminate(15); });
        EXPECT_EQ(signalOf([&] {
                      if (turns) {
                          waiting.scheduling().runLoopSlice(milliseconds(100));
                      } else {
                          waiting.scheduling().sleep(milliseconds(100));
                      }
                  }),
                  15);
        EXPECT_EQ(waiting.journal().back(), "0.037000000 clearContents()") << turns;
        EXPECT_EQ(waiting.now(), milliseconds(37)) << turns;
    }
}

TEST_F(SimulatedProcessEnd, AGuardDefersItUntilAReplyArrives) {
    SimulatedElement element = desktop.addApplication(812, std::nullopt, std::nullopt).addElement();
    element.answers(attribute::role, u"AXButton");
    desktop.setLatency(milliseconds(100));
    desktop.at(milliseconds(37), tellToEnd());
    const auto guard = scheduling.onTermination([] {});
    EXPECT_EQ(signalOf([&] {
                  EXPECT_EQ(desktop.accessibility().copyAttribute(element.element(), attribute::role),
                            answer(Text(u"AXButton")));
                  EXPECT_EQ(desktop.endedBySignal(), std::nullopt);
                  scheduling.runLoopSlice(milliseconds(20));
              }),
              15);
    EXPECT_EQ(desktop.now(), milliseconds(100));
}

TEST_F(SimulatedProcessEnd, ADestroyedGuardCleansUpAndTheNextCallEnds) {
    bool goesOn = false;
    EXPECT_EQ(signalOf([&] {
                  {
                      const auto guard = scheduling.onTermination([this] { desktop.pasteboard().clearContents(); });
                      desktop.terminate(1);
                      countChanges();
                  }
                  EXPECT_EQ(desktop.endedBySignal(), 1);
                  goesOn = true;
                  countChanges();
                  ADD_FAILURE() << "the call after the end returned";
              }),
              1);
    EXPECT_TRUE(goesOn);
    EXPECT_EQ(desktop.journal(), (Lines{
                                     "0.000000000 onTermination()",
                                     "0.000000000 changeCount() -> 100",
                                     "0.000000000 clearContents()",
                                 }));
}

TEST_F(SimulatedProcessEnd, ADestroyedGuardRunsNothingWithoutASignal) {
    int cleanUps = 0;
    scheduling.onTermination([&cleanUps] { ++cleanUps; }).reset();
    EXPECT_EQ(signalOf([this] {
                  countChanges();
                  desktop.terminate(15);
                  scheduling.sleep(Duration(0));
              }),
              15);
    EXPECT_EQ(cleanUps, 0);
}

TEST_F(SimulatedProcessEnd, AfterAGuardACallIsMadeAndTheNextWaitEnds) {
    scheduling.onTermination([] {}).reset();
    desktop.beforeCall(2, tellToEnd());
    EXPECT_EQ(signalOf([this] {
                  countChanges();
                  countChanges();
                  scheduling.sleep(milliseconds(100));
              }),
              15);
    EXPECT_EQ(desktop.now(), Moment(0));
    EXPECT_EQ(desktop.journal(), (Lines{
                                     "0.000000000 onTermination()",
                                     "0.000000000 changeCount() -> 100",
                                     "0.000000000 changeCount() -> 100",
                                     "0.000000000 sleep(0.100000000)",
                                 }));
}

TEST_F(SimulatedProcessEnd, AGuardThatHoldsOffDefersItUntilItsDestruction) {
    std::vector<Moment> cleanUps;
    desktop.at(milliseconds(37), tellToEnd());
    EXPECT_EQ(signalOf([&] {
                  auto guard = scheduling.onTermination([&] { cleanUps.push_back(desktop.now()); });
                  guard->holdOff();
                  scheduling.sleep(milliseconds(100));
                  scheduling.runLoopSlice(milliseconds(100));
                  EXPECT_EQ(desktop.endedBySignal(), std::nullopt);
                  guard.reset();
                  EXPECT_EQ(desktop.endedBySignal(), 15);
                  countChanges();
              }),
              15);
    EXPECT_EQ(cleanUps, std::vector<Moment>{milliseconds(200)});
}

TEST_F(SimulatedProcessEnd, HoldingOffDoesNotDeferAnEarlierSignal) {
    int cleanUps = 0;
    const auto guard = scheduling.onTermination([&cleanUps] { ++cleanUps; });
    desktop.terminate(15);
    EXPECT_EQ(signalOf([&] { guard->holdOff(); }), 15);
    EXPECT_EQ(cleanUps, 1);
}

/// A provider that reads the pasteboard when its text is requested.
class LookingProvider final : public PasteboardDataProvider {
public:
    explicit LookingProvider(SimulatedDesktop& desktop) : desktop_(desktop) {}
    void provideData(PromisedItem& item, const PasteboardType& type) override {
        static_cast<void>(desktop_.pasteboard().changeCount());
        item.setData("promised", type);
    }

private:
    SimulatedDesktop& desktop_;
};

TEST_F(SimulatedProcessEnd, DestructionOfTheDesktopIgnoresASignal) {
    bool wasTold = false;
    {
        SimulatedDesktop going;
        std::vector<NewPasteboardItem> items(1);
        items[0].promisedTypes.push_back(stringType);
        items[0].provider = std::make_shared<LookingProvider>(going);
        going.pasteboard().clearContents();
        EXPECT_TRUE(going.pasteboard().writeItems(std::move(items)));
        going.beforeCall(3, [&] {
            wasTold = true;
            going.terminate(15);
        });
    }
    EXPECT_TRUE(wasTold);
}

TEST_F(SimulatedProcessEnd, ANormalEndIgnoresALaterSignal) {
    const auto provider = promiseText(desktop);
    const std::size_t calls = desktop.journal().size();
    desktop.beforeCall(calls + 1, tellToEnd());
    desktop.endProcess();
    EXPECT_EQ(provider->asked, 1);
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"promised"));
}

TEST_F(SimulatedProcessEnd, TheNewestOfSeveralGuardsCleansUp) {
    std::vector<int> cleanUps;
    const auto outer = scheduling.onTermination([&] { cleanUps.push_back(1); });
    auto gone = scheduling.onTermination([&] { cleanUps.push_back(2); });
    const auto inner = scheduling.onTermination([&] { cleanUps.push_back(3); });
    gone.reset();
    desktop.terminate(15);
    EXPECT_EQ(signalOf([this] { scheduling.sleep(Duration(0)); }), 15);
    EXPECT_EQ(cleanUps, std::vector<int>{3});
}

TEST_F(SimulatedProcessEnd, TheOuterGuardCleansUpOnceTheInnerOneIsDestroyed) {
    std::vector<int> cleanUps;
    const auto outer = scheduling.onTermination([&] { cleanUps.push_back(1); });
    scheduling.onTermination([&] { cleanUps.push_back(2); }).reset();
    desktop.terminate(15);
    EXPECT_EQ(signalOf([this] { scheduling.runLoopSlice(Duration(0)); }), 15);
    EXPECT_EQ(cleanUps, std::vector<int>{1});
}

TEST_F(SimulatedProcessEnd, TheFirstSignalCountsAndNoneInterruptsTheCleanUp) {
    const auto guard = scheduling.onTermination([this] {
        desktop.terminate(9);
        scheduling.sleep(milliseconds(20));
    });
    desktop.terminate(15);
    desktop.terminate(2);
    EXPECT_EQ(signalOf([this] { scheduling.sleep(milliseconds(100)); }), 15);
    desktop.terminate(3);
    EXPECT_EQ(signalOf([this] { countChanges(); }), std::nullopt);
    EXPECT_EQ(desktop.endedBySignal(), 15);
    EXPECT_EQ(desktop.now(), milliseconds(20));
}

TEST_F(SimulatedProcessEnd, ProvidesPromisedDataAfterTheCleanUp) {
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"", {0, 0});
    notes.onPaste(pastesInto(text));
    desktop.bringToFront(812);
    const auto provider = promiseText(desktop);
    desktop.events().postToSession(*desktop.events().createKeyStroke({9, commandFlag}));
    int askedBefore = -1;
    const auto guard = scheduling.onTermination([&] { askedBefore = provider->asked; });
    desktop.terminate(15);
    EXPECT_EQ(signalOf([this] { scheduling.sleep(milliseconds(100)); }), 15);
    EXPECT_EQ(askedBefore, 0);
    EXPECT_EQ(provider->asked, 1);
    EXPECT_EQ(text.text(), u"promised");
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"promised"));
}

TEST_F(SimulatedProcessEnd, ASignalDuringAnExceptionIsHonoredAfterIt) {
    struct Restore {
        SimulatedDesktop& desktop;
        ~Restore() {
            desktop.terminate(15);
            desktop.pasteboard().clearContents();
        }
    };
    EXPECT_EQ(signalOf([this] {
                  EXPECT_THROW(
                      {
                          const Restore restore{desktop};
                          throw std::runtime_error("failed");
                      },
                      std::runtime_error);
                  EXPECT_EQ(desktop.endedBySignal(), 15);
                  countChanges();
              }),
              15);
    EXPECT_EQ(desktop.journal(), Lines{});
}

TEST_F(SimulatedProcessEnd, ASignalWhileABackgroundBlockRunsEndsTheMainThread) {
    scheduling.runInBackground([this] {
        desktop.terminate(15);
        countChanges();
        scheduling.sleep(milliseconds(10));
    });
    EXPECT_EQ(signalOf([this] { scheduling.runLoopSlice(milliseconds(20)); }), 15);
    EXPECT_EQ(desktop.now(), Moment(0));
    EXPECT_EQ(desktop.journal(), (Lines{
                                     "0.000000000 runInBackground() -> background 1",
                                     "0.000000000 runLoopSlice(0.020000000)",
                                     "0.000000000 [background 1] changeCount() -> 100",
                                     "0.000000000 [background 1] sleep(0.010000000)",
                                 }));
}

TEST_F(SimulatedProcessEnd, ABlockOfTheMainQueueEndsInItsWait) {
    std::vector<int> steps;
    const auto guard = scheduling.onTermination([&] { steps.push_back(2); });
    scheduling.runOnMainQueue([&] {
        steps.push_back(1);
        desktop.terminate(15);
        scheduling.sleep(milliseconds(10));
        steps.push_back(3);
    });
    EXPECT_EQ(signalOf([this] { scheduling.runLoopSlice(milliseconds(20)); }), 15);
    EXPECT_EQ(steps, (std::vector<int>{1, 2}));
}

}  // namespace
}  // namespace lomaris::test
