#include "tests/support/waiting.h"
#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/clipboard_world.h"

#include <algorithm>
#include <cstring>

namespace lomaris::test {
namespace {

using Values = std::vector<std::optional<PropertyValue>>;

TEST_F(Clipboard, OffersAPromisedTextAsAllTextTargets) {
    const auto provider = std::make_shared<TestProvider>("caf\xc3\xa9");
    ASSERT_TRUE(putPromise(provider));
    EXPECT_EQ(whileServing(scheduling(), [] { return OtherReader().targets(); }),
              (std::vector<std::string>{"MULTIPLE", "STRING", "TARGETS", "TEXT", "TIMESTAMP", "UTF8_STRING",
                                        "text/plain", "text/plain;charset=utf-8"}));
    EXPECT_EQ(contents(), (std::vector<Contents>{{{stringType, "caf\xc3\xa9"}}}));
    const Values values = whileServing(scheduling(), [] {
        return OtherReader().readTogether({"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING", "TEXT"});
    });
    EXPECT_EQ(values, (Values{PropertyValue{"UTF8_STRING", 8, "caf\xc3\xa9"},
                              PropertyValue{"text/plain;charset=utf-8", 8, "caf\xc3\xa9"},
                              PropertyValue{"text/plain", 8, "caf\xc3\xa9"}, PropertyValue{"STRING", 8, "caf\xe9"},
                              PropertyValue{"STRING", 8, "caf\xe9"}}));
}

TEST_F(Clipboard, RefusesLatin1IfTheTextDoesNotFit) {
    ASSERT_TRUE(putPromise(std::make_shared<TestProvider>("\xe2\x82\xac")));
    const Values values = whileServing(scheduling(), [] {
        return OtherReader().readTogether({"STRING", "TEXT", "UTF8_STRING"});
    });
    EXPECT_EQ(values, (Values{std::nullopt, PropertyValue{"UTF8_STRING", 8, "\xe2\x82\xac"},
                              PropertyValue{"UTF8_STRING", 8, "\xe2\x82\xac"}}));
}

TEST_F(Clipboard, OffersGivenBytesUnchanged) {
    ASSERT_TRUE(put({{stringType, "words"}}));
    EXPECT_EQ(whileServing(scheduling(), [] { return OtherReader().targets(); }),
              (std::vector<std::string>{"MULTIPLE", "TARGETS", "TIMESTAMP", "UTF8_STRING"}));
}

TEST_F(Clipboard, CallsAProviderOnlyForText) {
    const auto provider = std::make_shared<TestProvider>("words");
    ASSERT_TRUE(putPromise(provider, {{concealedType, ""}, {transientType, ""}}));
    const Values values = whileServing(scheduling(), [] {
        return OtherReader().readTogether({"TARGETS", "TIMESTAMP", concealedType, transientType,
                                           "x-kde-passwordManagerHint", "image/png", "MULTIPLE", "SAVE_TARGETS"});
    });
    ASSERT_EQ(values.size(), 8U);
    EXPECT_EQ(values[2], (PropertyValue{concealedType, 8, ""}));
    EXPECT_EQ(values[4], (PropertyValue{"x-kde-passwordManagerHint", 8, "secret"}));
    EXPECT_EQ(values[5], std::nullopt);
    EXPECT_EQ(values[6], std::nullopt);
    EXPECT_EQ(values[7], std::nullopt);
    EXPECT_EQ(provider->asked, std::vector<PasteboardType>{});
    for (const char* const target : {"text/plain", "UTF8_STRING", "STRING"}) {
        static_cast<void>(whileServing(scheduling(), [target] { return OtherReader().read(target); }));
    }
    EXPECT_EQ(provider->asked, std::vector<PasteboardType>{stringType});
}

TEST_F(Clipboard, RefusesAnUnfulfilledPromise) {
    const auto provider = std::make_shared<TestProvider>(std::nullopt);
    ASSERT_TRUE(putPromise(provider));
    EXPECT_EQ(whileServing(scheduling(), [] { return OtherReader().read("UTF8_STRING"); }), std::nullopt);
    EXPECT_EQ(provider->asked, std::vector<PasteboardType>{stringType});
}

TEST_F(Clipboard, CallsAProviderOnlyDuringSlices) {
    const auto provider = std::make_shared<TestProvider>("words");
    ASSERT_TRUE(putPromise(provider));
    OtherReader reader;
    auto read = std::async(std::launch::async, [&reader] { return reader.read("UTF8_STRING"); });
    // The reader gets the text at once. That it has read the text is noticed in slices.
    for (int round = 0; round < 200; ++round) {
        static_cast<void>(pasteboard().changeCount());
        ASSERT_EQ(provider->asked, std::vector<PasteboardType>{});
    }
    EXPECT_EQ(read.get(), (PropertyValue{"UTF8_STRING", 8, "words"}));
    static_cast<void>(pasteboard().changeCount());
    ASSERT_EQ(provider->asked, std::vector<PasteboardType>{});
    EXPECT_TRUE(waitFor([&] {
        scheduling().runLoopSlice(std::chrono::milliseconds(2));
        return provider->asked == std::vector<PasteboardType>{stringType};
    }));
}

TEST_F(Clipboard, OffersTheHintOfASecretOnlyToOtherPrograms) {
    ASSERT_TRUE(put({{stringType, "words"}, {concealedType, ""}}));
    EXPECT_EQ(contents(), (std::vector<Contents>{{{stringType, "words"}, {concealedType, ""}}}));
    EXPECT_EQ(whileServing(scheduling(), [] { return OtherReader().targets(); }),
              (std::vector<std::string>{"MULTIPLE", "TARGETS", "TIMESTAMP", "UTF8_STRING", concealedType,
                                        "x-kde-passwordManagerHint"}));
}

TEST_F(Clipboard, ServesTheTimeOfAcquisition) {
    ClipboardPeer peer;
    const xcb_timestamp_t before = peer.time();
    ASSERT_TRUE(put({{stringType, "words"}}));
    const xcb_timestamp_t after = peer.time();
    const auto value = whileServing(scheduling(), [] { return OtherReader().read("TIMESTAMP"); });
    ASSERT_TRUE(value.has_value());
    ASSERT_EQ(value->bytes.size(), sizeof(xcb_timestamp_t));
    EXPECT_EQ(value->type, "INTEGER");
    EXPECT_EQ(value->format, 32);
    xcb_timestamp_t time = 0;
    std::memcpy(&time, value->bytes.data(), sizeof time);
    EXPECT_GE(time, before);
    EXPECT_LE(time, after);
}

TEST_F(Clipboard, RefusesARequestOlderThanTheAcquisition) {
    ClipboardPeer peer;
    const xcb_timestamp_t before = peer.time();
    while (peer.time() == before) {
    }
    ASSERT_TRUE(put({{stringType, "words"}}));
    EXPECT_EQ(whileServing(scheduling(), [before] { return OtherReader().readAt("UTF8_STRING", before); }),
              std::nullopt);
    EXPECT_EQ(whileServing(scheduling(), [] { return OtherReader().readAt("UTF8_STRING", XCB_CURRENT_TIME); }),
              (PropertyValue{"UTF8_STRING", 8, "words"}));
}

TEST_F(Clipboard, ServesLongAndShortTargetsTogether) {
    const Bytes first = longBytes(300000);
    const Bytes second = longBytes(400000);
    ASSERT_TRUE(put({{"image/png", first}, {stringType, "words"}, {"image/bmp", second}}));
    const Values values = whileServing(scheduling(), [] {
        return OtherReader().readTogether({"image/png", "UTF8_STRING", "x", "image/bmp"});
    });
    EXPECT_TRUE(values == (Values{PropertyValue{"image/png", 8, first}, PropertyValue{"UTF8_STRING", 8, "words"},
                                  std::nullopt, PropertyValue{"image/bmp", 8, second}}));
}

TEST_F(Clipboard, ServesSeveralReadersAtOnce) {
    const Bytes bytes = longBytes(3000000);
    ASSERT_TRUE(put({{"image/png", bytes}}));
    std::vector<std::future<std::optional<PropertyValue>>> readers;
    for (int number = 0; number < 5; ++number) {
        readers.push_back(std::async(std::launch::async, [] { return OtherReader().read("image/png"); }));
    }
    for (auto& reader : readers) {
        const auto value = whileServing(scheduling(), [&reader] { return reader.get(); });
        EXPECT_TRUE(value == (PropertyValue{"image/png", 8, bytes}));
    }
}

TEST_F(Clipboard, CompletesTransfersOfReplacedContents) {
    const Bytes bytes = longBytes(3000000);
    ASSERT_TRUE(put({{"image/png", bytes}}));
    OtherReader reader;
    ASSERT_TRUE(whileServing(scheduling(), [&reader] { return reader.readSomePieces("image/png", 0); }));
    auto rest = std::async(std::launch::async, [&reader] {
        // The first piece is in the property; deleting it requests the second one.
        Bytes all;
        const xcb_atom_t property = reader.peer().atom("TEST_PASTE");
        const auto isNew = [property](const xcb_generic_event_t& event) {
            return event.response_type == XCB_PROPERTY_NOTIFY &&
                   reinterpret_cast<const xcb_property_notify_event_t&>(event).atom == property &&
                   reinterpret_cast<const xcb_property_notify_event_t&>(event).state == XCB_PROPERTY_NEW_VALUE;
        };
        while (reader.peer().waitFor(isNew)) {
            const Bytes piece = reader.peer().takeProperty(property).bytes;
            if (piece.empty()) {
                break;
            }
            all += piece;
        }
        return all;
    });
    ASSERT_TRUE(put({{stringType, "words"}}));
    EXPECT_TRUE(whileServing(scheduling(), [&rest] { return rest.get(); }) == bytes);
}

TEST_F(Clipboard, CountsEveryChangeOnce) {
    const std::int64_t first = pasteboard().changeCount();
    pasteboard().clearContents();
    EXPECT_EQ(pasteboard().changeCount(), first + 1);
    std::vector<NewPasteboardItem> items(1);
    items[0].data = {{stringType, "words"}};
    EXPECT_TRUE(pasteboard().writeItems(std::move(items)));
    EXPECT_EQ(pasteboard().changeCount(), first + 1);
    {
        const OtherOwner one({{"UTF8_STRING", {"", 8, "theirs"}}});
        EXPECT_EQ(pasteboard().changeCount(), first + 2);
        const OtherOwner two({{"UTF8_STRING", {"", 8, "theirs"}}});
        EXPECT_EQ(pasteboard().changeCount(), first + 3);
        EXPECT_FALSE(pasteboard().writeItems({})) << "another program owns the clipboard";
    }
    EXPECT_EQ(pasteboard().changeCount(), first + 4) << "the owner has disconnected";
    pasteboard().clearContents();
    EXPECT_EQ(pasteboard().changeCount(), first + 5);
}

TEST_F(Clipboard, RejectsAWriteBeforeItIsCleared) { EXPECT_FALSE(pasteboard().writeItems({})); }

}  // namespace
}  // namespace lomaris::test
