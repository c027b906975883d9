#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

const PasteboardType stringType{pasteboard_type::string};
const PasteboardType concealedType{pasteboard_type::concealed};

class TextProvider final : public PasteboardDataProvider {
public:
    explicit TextProvider(SimulatedDesktop& desktop) : desktop_(desktop) {}

    void provideData(PromisedItem& item, const PasteboardType& type) override {
        asked.emplace_back(type, desktop_.now());
        if (provides) {
            item.setData("promised", type);
        }
    }

    std::vector<std::pair<PasteboardType, Moment>> asked;
    bool provides = true;

private:
    SimulatedDesktop& desktop_;
};

bool promise(SimulatedDesktop& desktop, std::shared_ptr<PasteboardDataProvider> provider) {
    NewPasteboardItem item;
    item.data.emplace_back(concealedType, Bytes());
    item.promisedTypes.push_back(stringType);
    item.provider = std::move(provider);
    std::vector<NewPasteboardItem> items;
    items.push_back(std::move(item));
    desktop.pasteboard().clearContents();
    return desktop.pasteboard().writeItems(std::move(items));
}

/// The bytes that another program got, and the time.
struct Reading {
    bool isDone = false;
    std::optional<Bytes> bytes;
    Moment moment{-1};
};

void readInto(SimulatedDesktop& desktop, Reading& reading) {
    desktop.readPasteboardAsAnotherProgram(stringType, [&desktop, &reading](std::optional<Bytes> bytes) {
        reading = {true, std::move(bytes), desktop.now()};
    });
}

TEST(SimulatedPasteboard, JoinsThePlainTextOfAllItemsWithLineFeeds) {
    SimulatedDesktop desktop;
    desktop.userCopiesItems({CopiedItem{{{stringType, "one"}}, {}}, CopiedItem{{{"public.png", "pixels"}}, {}},
                             CopiedItem{{{stringType, "three"}, {"public.html", "<b>"}}, {}}});
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"one\nthree"));
    EXPECT_EQ(desktop.pasteboardContents(),
              (std::vector<StandingItem>{{{{stringType, "one"}}, {}},
                                         {{{"public.png", "pixels"}}, {}},
                                         {{{stringType, "three"}, {"public.html", "<b>"}}, {}}}));
}

TEST(SimulatedPasteboard, RequestsPromisedDataUntilItIsProvided) {
    SimulatedDesktop desktop;
    int asked = 0;
    CopiedItem item;
    item.promises.emplace_back(stringType, [&asked]() -> std::optional<Bytes> {
        ++asked;
        return asked == 1 ? std::nullopt : std::optional<Bytes>("late");
    });
    desktop.userCopiesItems({item});
    EXPECT_EQ(desktop.pasteboardContents(), (std::vector<StandingItem>{{{}, {stringType}}}));
    EXPECT_EQ(asked, 0);
    const auto items = desktop.pasteboard().items();
    EXPECT_EQ(items[0]->data(stringType), std::nullopt);
    EXPECT_EQ(items[0]->data(stringType), Bytes("late"));
    EXPECT_EQ(items[0]->data(stringType), Bytes("late"));
    EXPECT_EQ(asked, 2);
}

TEST(SimulatedPasteboard, RefusesAsManyWritesAsScripted) {
    SimulatedDesktop desktop;
    const auto provider = std::make_shared<TextProvider>(desktop);
    desktop.refusePasteboardWrites();
    EXPECT_FALSE(promise(desktop, provider));
    EXPECT_EQ(desktop.pasteboardContents(), std::vector<StandingItem>{});
    EXPECT_TRUE(promise(desktop, provider));
    EXPECT_EQ(desktop.pasteboardContents(), (std::vector<StandingItem>{{{{concealedType, ""}}, {stringType}}}));
}

TEST(SimulatedPasteboard, RefusesTheWritesWithScriptedNumbers) {
    SimulatedDesktop desktop;
    const auto provider = std::make_shared<TextProvider>(desktop);
    desktop.refusePasteboardWriteNumber(2);
    desktop.refusePasteboardWriteNumber(4);
    EXPECT_TRUE(promise(desktop, provider));
    EXPECT_FALSE(promise(desktop, provider));
    EXPECT_TRUE(promise(desktop, provider));
    EXPECT_FALSE(promise(desktop, provider));
    EXPECT_TRUE(promise(desktop, provider));
}

TEST(SimulatedPasteboard, RefusesAWriteAfterACopyByAnotherProgram) {
    SimulatedDesktop desktop;
    desktop.pasteboard().clearContents();
    desktop.userCopies(u"theirs");
    std::vector<NewPasteboardItem> items(1);
    items[0].data.emplace_back(stringType, "mine");
    EXPECT_FALSE(desktop.pasteboard().writeItems(std::move(items)));
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"theirs"));
}

TEST(SimulatedPasteboard, RequestsPromisedDataInASliceButNotInASleep) {
    SimulatedDesktop desktop;
    const auto provider = std::make_shared<TextProvider>(desktop);
    Reading first;
    Reading second;
    ASSERT_TRUE(promise(desktop, provider));
    desktop.at(milliseconds(10), [&] { readInto(desktop, first); });
    desktop.at(milliseconds(130), [&] { readInto(desktop, second); });
    desktop.scheduling().sleep(milliseconds(50));
    EXPECT_FALSE(first.isDone);
    desktop.scheduling().runLoopSlice(milliseconds(20));
    EXPECT_EQ(first.bytes, Bytes("promised"));
    EXPECT_EQ(first.moment, milliseconds(50));
    desktop.scheduling().sleep(milliseconds(100));
    EXPECT_EQ(second.bytes, Bytes("promised")) << "the pasteboard has the bytes by now";
    EXPECT_EQ(second.moment, milliseconds(130));
    EXPECT_EQ(provider->asked, (std::vector<std::pair<PasteboardType, Moment>>{{stringType, milliseconds(50)}}));
}

TEST(SimulatedPasteboard, ServesARequestAtItsMomentInASlice) {
    SimulatedDesktop desktop;
    const auto provider = std::make_shared<TextProvider>(desktop);
    Reading reading;
    ASSERT_TRUE(promise(desktop, provider));
    desktop.at(milliseconds(7), [&] { readInto(desktop, reading); });
    desktop.scheduling().runLoopSlice(milliseconds(20));
    EXPECT_EQ(reading.moment, milliseconds(7));
    EXPECT_EQ(desktop.now(), milliseconds(20));
}

TEST(SimulatedPasteboard, RequestsDataAgainIfTheProviderProvidedNone) {
    SimulatedDesktop desktop;
    const auto provider = std::make_shared<TextProvider>(desktop);
    provider->provides = false;
    ASSERT_TRUE(promise(desktop, provider));
    Reading reading;
    readInto(desktop, reading);
    desktop.scheduling().runLoopSlice(milliseconds(1));
    EXPECT_TRUE(reading.isDone);
    EXPECT_EQ(reading.bytes, std::nullopt);
    provider->provides = true;
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"promised"));
    EXPECT_EQ(provider->asked.size(), 2U);
}

TEST(SimulatedPasteboard, AWaitingReaderGetsNothingIfTheContentsChange) {
    SimulatedDesktop desktop;
    const auto provider = std::make_shared<TextProvider>(desktop);
    ASSERT_TRUE(promise(desktop, provider));
    Reading reading;
    readInto(desktop, reading);
    EXPECT_FALSE(reading.isDone);
    desktop.userCopies(u"theirs");
    EXPECT_TRUE(reading.isDone);
    EXPECT_EQ(reading.bytes, std::nullopt);
    desktop.scheduling().runLoopSlice(milliseconds(20));
    EXPECT_TRUE(provider->asked.empty());
}

TEST(SimulatedPasteboard, AWaitingReaderGetsTheTextOnDestruction) {
    Reading reading;
    {
        SimulatedDesktop desktop;
        ASSERT_TRUE(promise(desktop, std::make_shared<TextProvider>(desktop)));
        readInto(desktop, reading);
    }
    EXPECT_EQ(reading.bytes, Bytes("promised"));
}

TEST(SimulatedPasteboard, CountsAClearAndTheNextWriteAsOneChange) {
    SimulatedDesktop desktop;
    std::vector<std::int64_t> counts;
    const auto write = [&desktop] {
        std::vector<NewPasteboardItem> items(1);
        items[0].data.emplace_back(stringType, "mine");
        return desktop.pasteboard().writeItems(std::move(items));
    };
    const auto count = [&] { counts.push_back(desktop.pasteboard().changeCount()); };
    count();
    desktop.pasteboard().clearContents();
    count();
    ASSERT_TRUE(write());
    count();
    ASSERT_TRUE(write());
    count();
    desktop.pasteboard().clearContents();
    desktop.pasteboard().clearContents();
    count();
    desktop.userCopies(u"theirs");
    count();
    EXPECT_EQ(counts, (std::vector<std::int64_t>{100, 101, 101, 102, 104, 105}));
}

TEST(SimulatedPasteboard, ReturnsWhatAnotherProgramWouldRead) {
    SimulatedDesktop desktop;
    EXPECT_EQ(desktop.pasteboardStringForOthers(), std::nullopt);
    const auto provider = std::make_shared<TextProvider>(desktop);
    ASSERT_TRUE(promise(desktop, provider));
    const Lines before = desktop.journal();
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"promised"));
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"promised"));
    EXPECT_EQ(provider->asked.size(), 1U);
    EXPECT_EQ(desktop.journal(), before);
    desktop.userCopiesItems({CopiedItem{{{stringType, "one"}}, {}}, CopiedItem{{{stringType, "two"}}, {}}});
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"one\ntwo"));
    desktop.userCopiesItems({CopiedItem{{{"public.png", "pixels"}}, {}}});
    EXPECT_EQ(desktop.pasteboardStringForOthers(), std::nullopt);
}

TEST(SimulatedPasteboard, RecordsItsCallsInTheJournal) {
    SimulatedDesktop desktop;
    ASSERT_TRUE(promise(desktop, std::make_shared<TextProvider>(desktop)));
    static_cast<void>(desktop.pasteboard().changeCount());
    const auto items = desktop.pasteboard().items();
    static_cast<void>(items.at(0)->types());
    static_cast<void>(items.at(0)->data(stringType));
    desktop.userCopies(u"theirs");
    static_cast<void>(items.at(0)->data(stringType));
    static_cast<void>(desktop.pasteboard().string());
    desktop.pasteboard().clearContents();
    static_cast<void>(desktop.pasteboard().string());
    EXPECT_EQ(desktop.journal(),
              (Lines{
                  "0.000000000 clearContents()",
                  "0.000000000 writeItems([{org.nspasteboard.ConcealedType: \"\", public.utf8-plain-text: promised}]) "
                  "-> true",
                  "0.000000000 changeCount() -> 101",
                  "0.000000000 items() -> [item 1]",
                  "0.000000000 types(item 1) -> [org.nspasteboard.ConcealedType, public.utf8-plain-text]",
                  "0.000000000 data(item 1, public.utf8-plain-text) -> \"promised\"",
                  "0.000000000 data(item 1, public.utf8-plain-text) -> nothing",
                  "0.000000000 string() -> \"theirs\"",
                  "0.000000000 clearContents()",
                  "0.000000000 string() -> nothing",
              }));
}

}  // namespace
}  // namespace lomaris::test
