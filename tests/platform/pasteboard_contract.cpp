#include "tests/platform/pasteboard_contract.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace lomaris::test {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(PasteboardContract);

namespace {

using Contents = std::vector<std::pair<PasteboardType, std::optional<Bytes>>>;

const PasteboardType stringType{pasteboard_type::string};
const PasteboardType concealedType{pasteboard_type::concealed};
const PasteboardType transientType{pasteboard_type::transient};
const PasteboardType privateType{"com.example.private-type"};

/// A provider that supplies one text and records the requests.
class RecordingProvider final : public PasteboardDataProvider {
public:
    explicit RecordingProvider(Bytes bytes) : bytes_(std::move(bytes)) {}

    void provideData(PromisedItem& item, const PasteboardType& type) override {
        asked.push_back(type);
        item.setData(bytes_, type);
    }

    [[nodiscard]] std::optional<Bytes> promisedData(const PasteboardType& /*type*/) const override { return bytes_; }

    std::vector<PasteboardType> asked;

private:
    Bytes bytes_;
};

NewPasteboardItem plainItem(std::string_view text) {
    NewPasteboardItem item;
    item.data.emplace_back(stringType, Bytes(text));
    return item;
}

NewPasteboardItem promisedItem(const std::shared_ptr<PasteboardDataProvider>& provider) {
    NewPasteboardItem item;
    item.data.emplace_back(concealedType, Bytes());
    item.data.emplace_back(transientType, Bytes());
    item.promisedTypes.push_back(stringType);
    item.provider = provider;
    return item;
}

bool write(Pasteboard& pasteboard, NewPasteboardItem item) {
    pasteboard.clearContents();
    std::vector<NewPasteboardItem> items;
    items.push_back(std::move(item));
    return pasteboard.writeItems(std::move(items));
}

/// The types and bytes of an item, sorted by type.
Contents contentsOf(PasteboardItem& item) {
    Contents contents;
    for (const PasteboardType& type : item.types()) {
        contents.emplace_back(type, item.data(type));
    }
    std::sort(contents.begin(), contents.end());
    return contents;
}

std::vector<Contents> contentsOf(Pasteboard& pasteboard) {
    std::vector<Contents> contents;
    for (const auto& item : pasteboard.items()) {
        contents.push_back(contentsOf(*item));
    }
    return contents;
}

TEST_P(PasteboardContract, IsEmptyAfterClearing) {
    pasteboard().clearContents();
    EXPECT_EQ(contentsOf(pasteboard()), std::vector<Contents>{});
    EXPECT_EQ(pasteboard().string(), std::nullopt);
}

TEST_P(PasteboardContract, ReturnsWhatWasWritten) {
    const Bytes binary("\0\x01\xff\n\0", 5);
    NewPasteboardItem item = plainItem("caf\xc3\xa9");
    item.data.emplace_back(privateType, binary);
    item.data.emplace_back(concealedType, Bytes());
    ASSERT_TRUE(write(pasteboard(), std::move(item)));
    Contents expected{{stringType, "caf\xc3\xa9"}, {privateType, binary}, {concealedType, Bytes()}};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(contentsOf(pasteboard()), std::vector<Contents>{expected});
    EXPECT_EQ(pasteboard().string(), Text(u"caf\u00e9"));
}

TEST_P(PasteboardContract, HasNoStringWithoutATextType) {
    NewPasteboardItem item;
    item.data.emplace_back(privateType, "bytes");
    ASSERT_TRUE(write(pasteboard(), std::move(item)));
    EXPECT_EQ(pasteboard().string(), std::nullopt);
}

TEST_P(PasteboardContract, AnEmptyTextIsAText) {
    ASSERT_TRUE(write(pasteboard(), plainItem("")));
    EXPECT_EQ(pasteboard().string(), Text());
}

TEST_P(PasteboardContract, HasNoBytesForAMissingType) {
    ASSERT_TRUE(write(pasteboard(), plainItem("words")));
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->data(privateType), std::nullopt);
}

TEST_P(PasteboardContract, ItemsReturnNothingOnceTheContentsChanged) {
    ASSERT_TRUE(write(pasteboard(), plainItem("old")));
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    ASSERT_TRUE(write(pasteboard(), plainItem("new")));
    EXPECT_EQ(contentsOf(*items[0]), Contents{});
    EXPECT_EQ(items[0]->data(stringType), std::nullopt);
}

TEST_P(PasteboardContract, TheChangeCountChangesWithWritesButNotWithReads) {
    const std::int64_t first = pasteboard().changeCount();
    ASSERT_TRUE(write(pasteboard(), plainItem("words")));
    const std::int64_t second = pasteboard().changeCount();
    EXPECT_NE(second, first);
    static_cast<void>(contentsOf(pasteboard()));
    static_cast<void>(pasteboard().string());
    EXPECT_EQ(pasteboard().changeCount(), second);
    pasteboard().clearContents();
    EXPECT_NE(pasteboard().changeCount(), second);
}

TEST_P(PasteboardContract, ReadsWhatAnotherProgramCopies) {
    ASSERT_TRUE(write(pasteboard(), plainItem("mine")));
    const std::int64_t before = pasteboard().changeCount();
    world().otherProgramCopies({{stringType, "theirs"}});
    EXPECT_NE(pasteboard().changeCount(), before);
    EXPECT_EQ(pasteboard().string(), Text(u"theirs"));
}

TEST_P(PasteboardContract, AnotherProgramReadsWhatWasWritten) {
    NewPasteboardItem item = plainItem("words");
    item.data.emplace_back(privateType, "more");
    ASSERT_TRUE(write(pasteboard(), std::move(item)));
    EXPECT_EQ(world().otherProgramReads(stringType), Bytes("words"));
    EXPECT_EQ(world().otherProgramReads(privateType), Bytes("more"));
    EXPECT_EQ(world().otherProgramReads("com.example.missing"), std::nullopt);
}

TEST_P(PasteboardContract, RequestsPromisedDataOnlyWhenItsTypeIsRead) {
    const auto provider = std::make_shared<RecordingProvider>("promised words");
    ASSERT_TRUE(write(pasteboard(), promisedItem(provider)));
    const std::int64_t count = pasteboard().changeCount();
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    std::vector<PasteboardType> types = items[0]->types();
    std::sort(types.begin(), types.end());
    EXPECT_EQ(types, (std::vector<PasteboardType>{concealedType, transientType, stringType}));
    EXPECT_EQ(world().otherProgramReads(concealedType), Bytes());
    EXPECT_EQ(provider->asked, (std::vector<PasteboardType>{}));

    EXPECT_EQ(world().otherProgramReads(stringType), Bytes("promised words"));
    EXPECT_GE(provider->asked.size(), 1U);
    EXPECT_EQ(world().otherProgramReads(stringType), Bytes("promised words"));
    for (const PasteboardType& type : provider->asked) {
        EXPECT_EQ(type, stringType);
    }
    EXPECT_EQ(pasteboard().changeCount(), count) << "keeping a promise is no change";
}

TEST_P(PasteboardContract, ReleasesTheProviderOnceTheContentsChanged) {
    auto provider = std::make_shared<RecordingProvider>("promised words");
    const std::weak_ptr<RecordingProvider> watched = provider;
    ASSERT_TRUE(write(pasteboard(), promisedItem(provider)));
    provider.reset();
    EXPECT_FALSE(watched.expired());
    pasteboard().clearContents();
    EXPECT_TRUE(watched.expired());
}

TEST_P(PasteboardContract, HasOneHoldAtATime) {
    auto hold = pasteboard().tryHold();
    ASSERT_NE(hold, nullptr);
    EXPECT_EQ(pasteboard().tryHold(), nullptr);
    hold.reset();
    EXPECT_NE(pasteboard().tryHold(), nullptr);
}

TEST_P(PasteboardContract, CannotBeHeldWhileAnotherProcessHoldsIt) {
    ASSERT_TRUE(world().otherProcessHolds());
    EXPECT_EQ(pasteboard().tryHold(), nullptr);
    world().otherProcessReleases();
    auto hold = pasteboard().tryHold();
    ASSERT_NE(hold, nullptr);
    EXPECT_FALSE(world().otherProcessHolds());
    hold.reset();
    EXPECT_TRUE(world().otherProcessHolds());
}

TEST_P(PasteboardContract, AHoldDoesNotChangeTheContents) {
    world().otherProgramCopies({{stringType, "theirs"}});
    const std::int64_t count = pasteboard().changeCount();
    auto hold = pasteboard().tryHold();
    ASSERT_NE(hold, nullptr);
    hold->protect({{{stringType, Bytes("theirs")}}});
    hold->expectCopy(std::nullopt, std::chrono::seconds(1));
    hold.reset();
    EXPECT_EQ(pasteboard().changeCount(), count);
    EXPECT_EQ(pasteboard().string(), Text(u"theirs"));
}

TEST_P(PasteboardContract, IsHeldAgainAfterThePastedTextWasRead) {
    auto hold = pasteboard().tryHold();
    ASSERT_NE(hold, nullptr);
    ASSERT_TRUE(write(pasteboard(), promisedItem(std::make_shared<RecordingProvider>("promised words"))));
    hold->expectPaste(std::chrono::milliseconds(300), std::chrono::milliseconds(2500));
    EXPECT_EQ(world().otherProgramReads(stringType), Bytes("promised words"));
    ASSERT_TRUE(hold->retake());
    EXPECT_EQ(pasteboard().tryHold(), nullptr);
    EXPECT_FALSE(world().otherProcessHolds());
}

TEST_P(PasteboardContract, ProvidesItsPromisedDataOnDestruction) {
    const auto provider = std::make_shared<RecordingProvider>("promised words");
    ASSERT_TRUE(write(pasteboard(), promisedItem(provider)));
    world().endPlatform();
    EXPECT_EQ(provider->asked, (std::vector<PasteboardType>{stringType}));
}

TEST_P(PasteboardContract, ProvidesNoReplacedPromisesOnDestruction) {
    const auto provider = std::make_shared<RecordingProvider>("promised words");
    ASSERT_TRUE(write(pasteboard(), promisedItem(provider)));
    world().otherProgramCopies({{stringType, "theirs"}});
    world().endPlatform();
    EXPECT_EQ(provider->asked, (std::vector<PasteboardType>{}));
}

}  // namespace
}  // namespace lomaris::test
