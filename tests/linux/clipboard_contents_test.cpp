#include "platform/linux/x11/clipboard/clipboard_contents.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

const PasteboardType stringType{pasteboard_type::string};
const PasteboardType concealedType{pasteboard_type::concealed};

class Provider final : public PasteboardDataProvider {
public:
    explicit Provider(std::optional<Bytes> bytes) : bytes_(std::move(bytes)) {}

    void provideData(PromisedItem& item, const PasteboardType& type) override {
        asked.push_back(type);
        if (bytes_) {
            item.setData(*bytes_, type);
            item.setData("stray", "com.example.never-promised");
        }
    }

    std::vector<PasteboardType> asked;

private:
    std::optional<Bytes> bytes_;
};

NewPasteboardItem itemWith(std::vector<std::pair<PasteboardType, Bytes>> data) {
    return {std::move(data), {}, nullptr};
}

ClipboardContents contentsWith(std::vector<NewPasteboardItem> items, const PropertyForms& forms = {}) {
    ClipboardContents contents;
    contents.append(std::move(items), forms);
    return contents;
}

std::vector<std::string> targetsOf(const ClipboardContents& contents) {
    const auto targets = contents.targets();
    return {targets.begin(), targets.end()};
}

/// "type/format:bytes", or "none".
std::string answer(ClipboardContents& contents, const std::string& target) {
    const auto served = contents.served(target);
    return served ? served->form.type + "/" + std::to_string(served->form.format) + ":" + *served->bytes : "none";
}

TEST(ClipboardContents, OffersTheUnionOfAllItems) {
    ClipboardContents contents = contentsWith({itemWith({{stringType, "first"}, {"text/html", "<b>"}}),
                                               itemWith({{"image/png", "png"}, {stringType, "second"}})});
    EXPECT_EQ(targetsOf(contents), (std::vector<std::string>{"UTF8_STRING", "text/html", "image/png"}));
    EXPECT_EQ(answer(contents, "UTF8_STRING"), "UTF8_STRING/8:first");
    EXPECT_EQ(answer(contents, "image/png"), "image/png/8:png");
    EXPECT_EQ(answer(contents, "STRING"), "none");
    EXPECT_EQ(answer(contents, stringType), "none");
    EXPECT_EQ(contents.types(1), (std::vector<PasteboardType>{"image/png", stringType}));
    EXPECT_EQ(*contents.bytes(1, stringType), "second");
    EXPECT_EQ(contents.bytes(1, "text/html"), nullptr);
    EXPECT_EQ(contents.string(), Text(u"first\nsecond"));
}

TEST(ClipboardContents, OffersOnlyTargetsWithContents) {
    ClipboardContents contents = contentsWith({itemWith(
        {{"TARGETS", "x"}, {"MULTIPLE", "x"}, {"", "x"}, {std::string(300, 'x'), "x"}, {"text/html", "<b>"}})});
    EXPECT_EQ(targetsOf(contents), std::vector<std::string>{"text/html"});
    EXPECT_EQ(answer(contents, "TARGETS"), "none");
}

TEST(ClipboardContents, HasTheLastBytesOfATypeSetTwice) {
    ClipboardContents contents = contentsWith({itemWith({{"text/html", "old"}, {"text/html", "new"}})});
    EXPECT_EQ(contents.types(0), std::vector<PasteboardType>{"text/html"});
    EXPECT_EQ(answer(contents, "text/html"), "text/html/8:new");
}

TEST(ClipboardContents, RestoresTheFormOfTheFormerOwner) {
    const PropertyForms forms{{"SPAN", {"INTEGER", 32}}, {"TEXT", {"STRING", 8}}, {"ODD", {"INTEGER", 32}}};
    ClipboardContents contents =
        contentsWith({itemWith({{"SPAN", "12345678"}, {"TEXT", "words"}, {"ODD", "123"}})}, forms);
    EXPECT_EQ(answer(contents, "SPAN"), "INTEGER/32:12345678");
    EXPECT_EQ(answer(contents, "TEXT"), "STRING/8:words");
    EXPECT_EQ(answer(contents, "ODD"), "ODD/8:123") << "not a whole number of units";
}

TEST(ClipboardContents, CallsTheProviderOncePerType) {
    const auto provider = std::make_shared<Provider>("words");
    ClipboardContents contents = contentsWith({{{{concealedType, ""}}, {stringType, "text/html"}, provider}});
    EXPECT_EQ(targetsOf(contents),
              (std::vector<std::string>{concealedType, "UTF8_STRING", "text/html", "text/plain;charset=utf-8",
                                        "text/plain", "STRING", "TEXT", "x-kde-passwordManagerHint"}));
    EXPECT_EQ(answer(contents, "x-kde-passwordManagerHint"), "x-kde-passwordManagerHint/8:secret");
    EXPECT_EQ(contents.types(0), (std::vector<PasteboardType>{concealedType, stringType, "text/html"}));
    EXPECT_EQ(provider->asked, std::vector<PasteboardType>{});
    EXPECT_EQ(answer(contents, "TEXT"), "STRING/8:words");
    EXPECT_EQ(answer(contents, "UTF8_STRING"), "UTF8_STRING/8:words");
    EXPECT_EQ(provider->asked, std::vector<PasteboardType>{stringType});
    contents.keepPromises();
    EXPECT_EQ(provider->asked, (std::vector<PasteboardType>{stringType, "text/html"}));
    EXPECT_EQ(contents.types(0), (std::vector<PasteboardType>{concealedType, stringType, "text/html"}));
    EXPECT_EQ(provider.use_count(), 1) << "a provider is released after it was called for all types";
    EXPECT_EQ(answer(contents, "STRING"), "STRING/8:words");
}

TEST(ClipboardContents, HasNoBytesForAnUnfulfilledPromise) {
    for (const auto& provider : {std::make_shared<Provider>(std::nullopt), std::shared_ptr<Provider>()}) {
        ClipboardContents contents = contentsWith({{{}, {stringType}, provider}});
        EXPECT_EQ(answer(contents, "UTF8_STRING"), "none");
        EXPECT_EQ(answer(contents, "TEXT"), "none");
        EXPECT_EQ(contents.bytes(0, stringType), nullptr);
        EXPECT_EQ(contents.string(), std::nullopt);
    }
}

TEST(ClipboardContents, PrefersGivenBytesToAPromise) {
    const auto provider = std::make_shared<Provider>("promised");
    ClipboardContents contents = contentsWith({{{{stringType, "there"}}, {stringType}, provider}});
    EXPECT_EQ(targetsOf(contents), std::vector<std::string>{"UTF8_STRING"});
    EXPECT_EQ(answer(contents, "UTF8_STRING"), "UTF8_STRING/8:there");
    EXPECT_EQ(provider->asked, std::vector<PasteboardType>{});
}

TEST(ClipboardContents, ServesLatin1OnlyIfTheTextFits) {
    struct Case {
        Bytes text;
        std::string string;
        std::string anyText;
    };
    const Case cases[] = {
        {"\xc3\xa9", "STRING/8:\xe9", "STRING/8:\xe9"},
        {"\xe2\x82\xac", "none", "UTF8_STRING/8:\xe2\x82\xac"},
        {"", "STRING/8:", "STRING/8:"},
    };
    for (const Case& tested : cases) {
        ClipboardContents contents = contentsWith({{{}, {stringType}, std::make_shared<Provider>(tested.text)}});
        EXPECT_EQ(answer(contents, "STRING"), tested.string) << tested.text;
        EXPECT_EQ(answer(contents, "TEXT"), tested.anyText) << tested.text;
        EXPECT_EQ(answer(contents, "text/plain"), "text/plain/8:" + tested.text) << tested.text;
    }
}

}  // namespace
}  // namespace lomaris::test
