// The simulated keeper of the pasteboard after the end of this process.

#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

const PasteboardType stringType{pasteboard_type::string};
constexpr KeyStroke copyKey{8, commandFlag};

class StagedText final : public PasteboardDataProvider {
public:
    void provideData(PromisedItem& item, const PasteboardType& type) override {
        ++requests;
        item.setData("staged", type);
    }
    [[nodiscard]] std::optional<Bytes> promisedData(const PasteboardType& type) const override {
        return type == stringType ? std::optional<Bytes>("staged") : std::nullopt;
    }

    int requests = 0;
};

class SimulatedKeeper : public testing::Test {
protected:
    SimulatedKeeper() {
        desktop.addKeeper();
        desktop.bringToFront(812);
        desktop.userCopies(u"mine");
    }

    /// An operation that has saved the clipboard and written a promised text.
    void begin() {
        hold = desktop.pasteboard().tryHold();
        hold->protect({{{stringType, "mine"}}});
        desktop.pasteboard().clearContents();
        stage();
    }
    void stage() {
        std::vector<NewPasteboardItem> items(1);
        items[0].promisedTypes = {stringType};
        items[0].provider = staged;
        EXPECT_TRUE(desktop.pasteboard().writeItems(std::move(items)));
    }

    void post(KeyStroke keyStroke) { desktop.events().postToSession(*desktop.events().createKeyStroke(keyStroke)); }

    /// Another program reads the text at this moment; the result is what it gets.
    std::shared_ptr<std::optional<Bytes>> readAt(Moment moment) {
        auto bytes = std::make_shared<std::optional<Bytes>>();
        desktop.at(moment, [this, bytes] {
            desktop.readPasteboardAsAnotherProgram(stringType, [bytes](auto read) { *bytes = std::move(read); });
        });
        return bytes;
    }

    /// Records the clipboard's text at each of these moments, and whether another process could use the pasteboard.
    void lookAt(const std::vector<Moment>& moments) {
        for (const Moment moment : moments) {
            desktop.at(moment, [this] { looks.push_back(text() + (isFree() ? ", free" : ", in use")); });
        }
    }
    bool isFree() { return desktop.holdPasteboardUntil(desktop.now()); }
    /// The clipboard's text, without a read that the keeper would notice.
    [[nodiscard]] std::string text() const {
        const auto contents = desktop.pasteboardContents();
        if (contents.size() != 1) {
            return "nothing";
        }
        return contents[0].data.empty() ? "promised" : contents[0].data[0].second;
    }

    using Looks = std::vector<std::string>;

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    std::shared_ptr<StagedText> staged = std::make_shared<StagedText>();
    std::unique_ptr<PasteboardHold> hold;
    Looks looks;
};

TEST_F(SimulatedKeeper, RestoresImmediatelyIfTheProcessIsKilled) {
    begin();
    desktop.kill();
    EXPECT_EQ(text(), "mine");
    EXPECT_TRUE(isFree());
}

TEST_F(SimulatedKeeper, RestoresIfTheProcessIsKilledBetweenClearingAndWriting) {
    hold = desktop.pasteboard().tryHold();
    hold->protect({{{stringType, "mine"}}});
    desktop.pasteboard().clearContents();
    desktop.kill();
    EXPECT_EQ(text(), "mine");
}

TEST_F(SimulatedKeeper, ChangesNothingIfTheProcessIsKilledBeforeItsFirstChange) {
    hold = desktop.pasteboard().tryHold();
    hold->protect({{{stringType, "other words"}}});
    desktop.kill();
    EXPECT_EQ(text(), "mine");
    EXPECT_TRUE(isFree());
}

TEST_F(SimulatedKeeper, ChangesNothingIfTheOperationIsOver) {
    begin();
    hold.reset();
    desktop.kill();
    EXPECT_EQ(text(), "staged");
}

TEST_F(SimulatedKeeper, RestoresOverALateCopyOfTheTargetWithinTheWait) {
    notes.onCopy(copies(u"late").after(900ms));
    begin();
    hold->expectCopy(812, 1s);
    post(copyKey);
    desktop.kill();
    lookAt({899ms, 1s - 1ns, 1s});
    desktop.endProcess();
    EXPECT_EQ(looks, (Looks{"mine, in use", "mine, in use", "mine, free"}));
}

TEST_F(SimulatedKeeper, KeepsALaterCopyOfTheTarget) {
    notes.onCopy(copies(u"late").after(1s));
    begin();
    hold->expectCopy(812, 1s);
    post(copyKey);
    desktop.kill();
    desktop.endProcess();
    EXPECT_EQ(text(), "late");
}

TEST_F(SimulatedKeeper, DistinguishesTheTargetFromAnotherApplication) {
    desktop.addApplication(900, std::nullopt, std::nullopt).onCopy(copies(u"theirs").after(100ms));
    desktop.bringToFront(900);
    begin();
    hold->expectCopy(812, 1s);
    post(copyKey);
    desktop.kill();
    lookAt({99ms, 101ms});
    desktop.endProcess();
    EXPECT_EQ(looks, (Looks{"mine, in use", "theirs, free"}));
}

TEST_F(SimulatedKeeper, DistinguishesTheTargetFromTheUser) {
    begin();
    hold->expectCopy(812, 1s);
    desktop.kill();
    desktop.at(100ms, [this] { desktop.userCopies(u"newer"); });
    desktop.endProcess();
    EXPECT_EQ(text(), "newer");
}

TEST_F(SimulatedKeeper, KeepsEveryCopyIfTheTargetIsUnknown) {
    notes.onCopy(copies(u"late").after(100ms));
    begin();
    hold->expectCopy(std::nullopt, 1s);
    post(copyKey);
    desktop.kill();
    desktop.endProcess();
    EXPECT_EQ(text(), "late");
}

TEST_F(SimulatedKeeper, ProvidesTheTextToAReaderThatWaitsDuringAKill) {
    begin();
    hold->expectPaste(300ms, 2500ms);
    const auto read = readAt(100ms);
    desktop.at(200ms, [this] { desktop.kill(); });
    lookAt({199ms, 201ms, 300ms - 1ns, 301ms});
    EXPECT_THROW(desktop.scheduling().sleep(1s), SimulatedTermination);
    EXPECT_EQ(*read, "staged");
    desktop.endProcess();
    EXPECT_EQ(looks, (Looks{"promised, in use", "staged, in use", "staged, in use", "mine, free"}));
    EXPECT_EQ(staged->requests, 0);
}

TEST_F(SimulatedKeeper, ProvidesTheTextToALaterReaderAndThenRestores) {
    begin();
    hold->expectPaste(300ms, 2500ms);
    desktop.kill();
    const auto read = readAt(2s);
    lookAt({1999ms, 2001ms});
    desktop.endProcess();
    EXPECT_EQ(*read, "staged");
    EXPECT_EQ(looks, (Looks{"staged, in use", "mine, free"}));
}

TEST_F(SimulatedKeeper, RestoresAfterTheGraceWaitIfNoProgramReadsTheText) {
    begin();
    hold->expectPaste(300ms, 2500ms);
    desktop.kill();
    lookAt({2500ms - 1ns, 2500ms});
    desktop.endProcess();
    EXPECT_EQ(looks, (Looks{"staged, in use", "mine, free"}));
}

TEST_F(SimulatedKeeper, KeepsTheHoldAfterANormalEndUntilTheTextIsRead) {
    begin();
    hold->expectPaste(300ms, 2500ms);
    const auto read = readAt(400ms);
    lookAt({400ms - 1ns, 401ms});
    desktop.endProcess();
    EXPECT_EQ(*read, "staged");
    EXPECT_EQ(looks, (Looks{"staged, in use", "staged, free"}));
    EXPECT_EQ(text(), "staged");
}

TEST_F(SimulatedKeeper, KeepsTheHoldAfterANormalEndForTheGraceWaitAtMost) {
    begin();
    hold->expectPaste(300ms, 2500ms);
    hold.reset();
    lookAt({2500ms - 1ns, 2500ms});
    desktop.endProcess();
    EXPECT_EQ(looks, (Looks{"staged, in use", "staged, free"}));
}

TEST_F(SimulatedKeeper, ReleasesTheHoldOfAProcessThatDoesNotRestore) {
    begin();
    hold->expectPaste(300ms, 2500ms);
    lookAt({3000ms - 1ns, 3000ms});
    desktop.scheduling().sleep(4s);
    EXPECT_EQ(looks, (Looks{"promised, in use", "promised, free"}));
    EXPECT_TRUE(hold->retake());
    EXPECT_FALSE(isFree());
}

TEST_F(SimulatedKeeper, CannotRetakeTheHoldFromAnotherProcess) {
    begin();
    hold->expectPaste(300ms, 2500ms);
    desktop.scheduling().sleep(3s);
    EXPECT_TRUE(desktop.holdPasteboardUntil(4s));
    EXPECT_FALSE(hold->retake());
    desktop.scheduling().sleep(1s);
    EXPECT_TRUE(hold->retake());
}

TEST_F(SimulatedKeeper, DoesNotServeContentsWrittenBeforeTheFirstHold) {
    desktop.pasteboard().clearContents();
    stage();
    const auto read = readAt(100ms);
    desktop.kill();
    desktop.endProcess();
    EXPECT_EQ(*read, std::nullopt);
    EXPECT_EQ(text(), "promised");
}

TEST_F(SimulatedKeeper, RequestsPromisedDataFromTheRunningProcess) {
    begin();
    const auto read = readAt(100ms);
    desktop.scheduling().sleep(200ms);
    EXPECT_EQ(staged->requests, 0);
    EXPECT_EQ(*read, std::nullopt);
    desktop.scheduling().runLoopSlice(20ms);
    EXPECT_EQ(staged->requests, 1);
    EXPECT_EQ(*read, "staged");
}

}  // namespace
}  // namespace lomaris
