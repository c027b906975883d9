// Reads and pastes while another process uses the clipboard.

#include "accessibility/fallback/key_strokes.h"
#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/run_loop.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;
using Policy = ClipboardSelectionReadPolicy;

class ClipboardContention : public testing::Test {
protected:
    ClipboardContention() {
        desktop.bringToFront(812);
        desktop.userCopies(u"mine");
        before = desktop.pasteboardContents();
    }

    Text read() { return fallback.readSelectedText(812, Policy::standard, nullptr); }

    /// The time is `moment`, and nothing was done but to wait.
    void expectUntouched(Moment moment) {
        EXPECT_EQ(desktop.now(), moment);
        EXPECT_EQ(desktop.pasteboardContents(), before);
        EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
        for (const std::string& line : desktop.journal()) {
            EXPECT_NE(line.find("runLoopSlice(0.020000000)"), std::string::npos) << line;
        }
    }

    static BridgeError inUse() {
        return BridgeError::clipboardFallbackFailed(u"another operation kept the clipboard in use for 10 seconds");
    }

    SimulatedDesktop desktop;
    KeyboardClipboardFallback fallback{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    std::vector<StandingItem> before;
};

TEST_F(ClipboardContention, StartsAReadWhenTheOtherOperationEnds) {
    notes.onCopy(copies(u"brown fox").after(137ms));
    ASSERT_TRUE(desktop.holdPasteboardUntil(3s));
    EXPECT_EQ(read(), u"brown fox");
    EXPECT_EQ(desktop.postedKeyStrokes().at(0).moment, 3s);
    EXPECT_EQ(desktop.now(), 3140ms);
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardContention, SavesWhatTheOtherOperationLeft) {
    notes.onCopy(copies(u"brown fox"));
    ASSERT_TRUE(desktop.holdPasteboardUntil(3s));
    desktop.at(2s, [this] { desktop.userCopies(u"newer"); });
    EXPECT_EQ(read(), u"brown fox");
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"newer");
}

TEST_F(ClipboardContention, NoticesTheEndOfTheOtherOperationWithinASlice) {
    notes.onCopy(copies(u"brown fox"));
    ASSERT_TRUE(desktop.holdPasteboardUntil(3s + 1ns));
    EXPECT_EQ(read(), u"brown fox");
    EXPECT_EQ(desktop.now(), 3020ms);
}

TEST_F(ClipboardContention, WaitsTheFullTimeOfAReadAfterwards) {
    ASSERT_TRUE(desktop.holdPasteboardUntil(3s));
    EXPECT_EQ(
        test::thrownBy([this] { return read(); }),
        BridgeError::clipboardFallbackFailed(u"the target application did not respond to Cmd+C after 3 attempt(s)"));
    EXPECT_EQ(desktop.now(), 3s + 3160ms);
}

TEST_F(ClipboardContention, FailsAReadAfter10SecondsWithoutAnyChange) {
    notes.onCopy(copies(u"brown fox"));
    ASSERT_TRUE(desktop.holdPasteboardUntil(Moment::max()));
    EXPECT_EQ(test::thrownBy([this] { return read(); }), inUse());
    expectUntouched(10s);
}

TEST_F(ClipboardContention, FailsAPasteAfter10SecondsWithoutAnyChange) {
    ASSERT_TRUE(desktop.holdPasteboardUntil(Moment::max()));
    EXPECT_EQ(test::thrownBy([this] {
                  fallback.replaceSelectedText(u"red fox", 812);
                  return 0;
              }),
              inUse());
    expectUntouched(10s);
}

TEST_F(ClipboardContention, StartsIfReleasedAtTheDeadline) {
    notes.onCopy(copies(u"brown fox"));
    ASSERT_TRUE(desktop.holdPasteboardUntil(10s));
    EXPECT_EQ(read(), u"brown fox");
    EXPECT_EQ(desktop.now(), 10s);
}

TEST_F(ClipboardContention, ReadsAfterAnEarlierFailure) {
    notes.onCopy(copies(u"brown fox"));
    ASSERT_TRUE(desktop.holdPasteboardUntil(12s));
    EXPECT_EQ(test::thrownBy([this] { return read(); }), inUse());
    EXPECT_EQ(read(), u"brown fox");
    EXPECT_EQ(desktop.now(), 12s);
}

TEST_F(ClipboardContention, StartsAPasteWhenTheOtherOperationEnds) {
    notes.onPaste(pastesInto(text));
    ASSERT_TRUE(desktop.holdPasteboardUntil(3s));
    fallback.replaceSelectedText(u"red fox", 812);
    EXPECT_EQ(desktop.postedKeyStrokes().at(0).moment, 3s);
    test::turnFor(desktop, 300ms);
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardContention, ServesItsOwnPromisesWhileItWaits) {
    class Provider final : public PasteboardDataProvider {
    public:
        void provideData(PromisedItem& item, const PasteboardType& type) override { item.setData("promised", type); }
    };
    std::vector<NewPasteboardItem> items(1);
    items[0].promisedTypes = {PasteboardType(pasteboard_type::string)};
    items[0].provider = std::make_shared<Provider>();
    desktop.pasteboard().clearContents();
    ASSERT_TRUE(desktop.pasteboard().writeItems(std::move(items)));
    notes.onCopy(copies(u"brown fox"));
    ASSERT_TRUE(desktop.holdPasteboardUntil(3s));
    std::optional<Moment> served;
    desktop.at(1s, [&] {
        desktop.readPasteboardAsAnotherProgram(PasteboardType(pasteboard_type::string), [&](const auto& bytes) {
            EXPECT_EQ(bytes, "promised");
            served = desktop.now();
        });
    });
    EXPECT_EQ(read(), u"brown fox");
    EXPECT_EQ(served, 1s);
}

TEST_F(ClipboardContention, EndsImmediatelyIfTerminatedWhileWaiting) {
    ASSERT_TRUE(desktop.holdPasteboardUntil(Moment::max()));
    desktop.at(2s, [this] { desktop.terminate(SIGTERM); });
    EXPECT_THROW(static_cast<void>(read()), SimulatedTermination);
    expectUntouched(2s);
}

TEST_F(ClipboardContention, ReleasesTheClipboardAfterAReadAndAfterAFailedPaste) {
    notes.onCopy(copies(u"brown fox"));
    static_cast<void>(read());
    EXPECT_TRUE(desktop.holdPasteboardUntil(desktop.now()));
    desktop.setPostEventAccess(false);
    EXPECT_EQ(test::thrownBy([this] {
                  fallback.replaceSelectedText(u"red fox", 812);
                  return 0;
              }),
              BridgeError::keyboardEventPermissionRequired());
    EXPECT_TRUE(desktop.holdPasteboardUntil(desktop.now()));
}

TEST_F(ClipboardContention, ExcludesOtherProcessesAtEveryCallOfARead) {
    notes.onCopy(copies(u"brown fox"));
    std::size_t call = 0;
    std::size_t refusals = 0;
    for (bool isReached = true; isReached;) {
        SimulatedDesktop fresh;
        KeyboardClipboardFallback freshFallback(fresh);
        fresh.addApplication(812, std::nullopt, std::nullopt).onCopy(copies(u"brown fox"));
        fresh.bringToFront(812);
        isReached = false;
        fresh.beforeCall(++call, [&] {
            isReached = true;
            refusals += fresh.pasteboard().tryHold() == nullptr ? 1U : 0U;
        });
        EXPECT_EQ(freshFallback.readSelectedText(812, Policy::standard, nullptr), u"brown fox");
    }
    // The first call begins the snapshot, the last one completes the restore; the loop ends one call later.
    EXPECT_EQ(refusals, call - 1);
    EXPECT_GT(refusals, 10U);
}

}  // namespace
}  // namespace lomaris
