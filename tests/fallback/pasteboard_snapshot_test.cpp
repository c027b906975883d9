#include "accessibility/fallback/pasteboard_snapshot.h"

#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace lomaris {
namespace {

using Contents = std::vector<StandingItem>;

class Snapshot : public testing::Test {
protected:
    PasteboardSnapshot capture() { return PasteboardSnapshot::capture(desktop.pasteboard()); }

    SimulatedDesktop desktop;
};

TEST_F(Snapshot, RestoresAnEmptyPasteboardWithANewChangeCount) {
    const auto snapshot = capture();
    EXPECT_TRUE(snapshot.items().empty());
    const auto count = desktop.pasteboard().changeCount();
    snapshot.restore(desktop.pasteboard());
    EXPECT_EQ(desktop.pasteboardContents(), Contents());
    EXPECT_NE(desktop.pasteboard().changeCount(), count);
}

TEST_F(Snapshot, RestoresAnEmptyPasteboardOverLaterContents) {
    const auto snapshot = capture();
    desktop.userCopies(u"later");
    snapshot.restore(desktop.pasteboard());
    EXPECT_EQ(desktop.pasteboardContents(), Contents());
}

TEST_F(Snapshot, RestoresSeveralItemsInOrderWithAllTypes) {
    const std::vector<CopiedItem> files = {
        {.data = {{"public.file-url", "file:///a"}, {"public.utf8-plain-text", "a"}}, .promises = {}},
        {.data = {{"public.file-url", "file:///b"}, {"com.example.icon", std::string("\0\x01\xff", 3)}},
         .promises = {}},
    };
    desktop.userCopiesItems(files);
    const Contents before = desktop.pasteboardContents();
    const auto snapshot = capture();
    desktop.userCopies(u"something else");
    snapshot.restore(desktop.pasteboard());
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(Snapshot, FetchesPromisedData) {
    int asked = 0;
    desktop.userCopiesItems({{.data = {}, .promises = {{"public.utf8-plain-text", [&asked] {
                                                            ++asked;
                                                            return std::optional<Bytes>("promised");
                                                        }}}}});
    const auto snapshot = capture();
    EXPECT_EQ(asked, 1);
    desktop.userCopies(u"something else");
    snapshot.restore(desktop.pasteboard());
    EXPECT_EQ(desktop.pasteboardContents(),
              (Contents{{.data = {{"public.utf8-plain-text", "promised"}}, .promised = {}}}));
}

TEST_F(Snapshot, DropsTypesWithoutDataAndKeepsItemsWithoutTypes) {
    const auto nothing = [] { return std::optional<Bytes>(); };
    desktop.userCopiesItems({
        {.data = {{"public.png", "pixels"}}, .promises = {{"public.html", nothing}}},
        {.data = {}, .promises = {{"public.html", nothing}}},
    });
    const auto snapshot = capture();
    ASSERT_EQ(snapshot.items().size(), 2U);
    EXPECT_EQ(snapshot.items()[0], (PasteboardItemContents{{"public.png", "pixels"}}));
    EXPECT_EQ(snapshot.items()[1], PasteboardItemContents());
    snapshot.restore(desktop.pasteboard());
    EXPECT_EQ(desktop.pasteboardContents(),
              (Contents{{.data = {{"public.png", "pixels"}}, .promised = {}}, {.data = {}, .promised = {}}}));
}

TEST_F(Snapshot, RestoresTheSameContentsEachTime) {
    desktop.userCopies(u"mine");
    const Contents before = desktop.pasteboardContents();
    const auto snapshot = capture();
    for (int time = 0; time < 2; ++time) {
        desktop.userCopies(u"something else");
        snapshot.restore(desktop.pasteboard());
        EXPECT_EQ(desktop.pasteboardContents(), before) << time;
    }
}

TEST_F(Snapshot, LeavesThePasteboardEmptyIfTheWriteIsRefused) {
    desktop.userCopies(u"mine");
    const auto snapshot = capture();
    desktop.refusePasteboardWrites();
    snapshot.restore(desktop.pasteboard());
    EXPECT_EQ(desktop.pasteboardContents(), Contents());
}

}  // namespace
}  // namespace lomaris
