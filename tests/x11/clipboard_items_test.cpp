#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_world.h"

namespace lomaris::test {
namespace {

// A snapshot of the pasteboard returns nothing once the contents have changed. Each operation detects that by itself,
// so for each there is a test that calls it first.

const std::vector<OfferedTarget> theirs{{"UTF8_STRING", {"", 8, "theirs"}}};

TEST_F(Clipboard, OwnItemsHaveNoDataOnceAnotherProgramCopies) {
    ASSERT_TRUE(put({{stringType, "ours"}}));
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->data(stringType), "ours");
    const OtherOwner other(theirs);
    EXPECT_EQ(items[0]->data(stringType), std::nullopt);
}

TEST_F(Clipboard, OwnItemsHaveNoTypesOnceAnotherProgramCopies) {
    ASSERT_TRUE(put({{stringType, "ours"}}));
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->types(), std::vector<PasteboardType>{stringType});
    const OtherOwner other(theirs);
    EXPECT_EQ(items[0]->types(), std::vector<PasteboardType>());
}

TEST_F(Clipboard, PromisesAreDroppedOnceAnotherProgramCopies) {
    const auto provider = std::make_shared<TestProvider>("ours");
    ASSERT_TRUE(putPromise(provider));
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    const OtherOwner other(theirs);
    EXPECT_EQ(items[0]->data(stringType), std::nullopt);
    EXPECT_EQ(provider->asked, std::vector<PasteboardType>());
}

TEST_F(Clipboard, ForeignItemsHaveNoDataOnceTheContentsChange) {
    const OtherOwner first({{"UTF8_STRING", {"", 8, "first"}}});
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->data(stringType), "first");
    const OtherOwner second(theirs);
    EXPECT_EQ(items[0]->data(stringType), std::nullopt);
    EXPECT_EQ(items[0]->types(), std::vector<PasteboardType>());
    EXPECT_EQ(second.asked(), std::vector<std::string>());
}

TEST_F(Clipboard, ForeignItemsHaveNoTypesOnceTheContentsChange) {
    const OtherOwner first({{"UTF8_STRING", {"", 8, "first"}}});
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    pasteboard().clearContents();
    EXPECT_EQ(items[0]->types(), std::vector<PasteboardType>());
    EXPECT_EQ(items[0]->data(stringType), std::nullopt);
}

TEST_F(Clipboard, ItemsAreEmptyOnceThePasteboardIsGone) {
    ASSERT_TRUE(put({{stringType, "ours"}}));
    const auto own = pasteboard().items();
    const OtherOwner other(theirs);
    const auto foreign = pasteboard().items();
    end();
    for (const auto& item : {own.at(0).get(), foreign.at(0).get()}) {
        EXPECT_EQ(item->types(), std::vector<PasteboardType>());
        EXPECT_EQ(item->data(stringType), std::nullopt);
    }
}

}  // namespace
}  // namespace lomaris::test
