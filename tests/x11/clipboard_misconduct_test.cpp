#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/clipboard_world.h"

namespace lomaris::test {
namespace {

TEST_F(Clipboard, HasNoItemsIfTheOwnerDoesNotListItsTargets) {
    struct Case {
        const char* name;
        OfferedTarget list;
    };
    const std::vector<Case> cases{
        {"silence", {"TARGETS", {}, Conduct::isSilent}},
        {"refusal", {"TARGETS", {}, Conduct::refuses}},
        {"nothing there", {"TARGETS", {}, Conduct::answersNothing}},
        {"another place", {"TARGETS", {"ATOM", 32, "\1\0\0\0"}, Conduct::answersElsewhere}},
        {"another type", {"TARGETS", {"STRING", 8, "UTF8"}}},
        {"another format", {"TARGETS", {"ATOM", 8, "UTF8"}}},
        {"another type of numbers", {"TARGETS", {"INTEGER", 32, Bytes("\1\0\0\0", 4)}}},
        {"no targets", {"TARGETS", {"ATOM", 32, ""}}},
        {"numbers of nothing", {"TARGETS", {"ATOM", 32, Bytes("\xff\xff\xff\x1f\0\0\0\0", 8)}}},
    };
    for (const Case& tested : cases) {
        const OtherOwner owner({{"UTF8_STRING", {"", 8, "words"}}, tested.list});
        EXPECT_EQ(contents(), std::vector<Contents>{}) << tested.name;
    }
}

TEST_F(Clipboard, ReadsOtherTypesIfOneIsNotDelivered) {
    const Bytes bytes = longBytes(200000);
    struct Case {
        const char* name;
        OfferedTarget offered;
    };
    const std::vector<Case> cases{
        {"refused", {"image/png", {"", 8, bytes}, Conduct::refuses}},
        {"not there", {"image/png", {"", 8, bytes}, Conduct::answersNothing}},
        {"elsewhere", {"image/png", {"", 8, bytes}, Conduct::answersElsewhere}},
        {"silent", {"image/png", {"", 8, bytes}, Conduct::isSilent}},
        {"stops", {"image/png", {"", 8, bytes}, Conduct::stopsAfterOnePiece}},
        {"changes", {"image/png", {"", 8, bytes}, Conduct::changesItsMind}},
    };
    for (const Case& tested : cases) {
        const OtherOwner owner({{"text/html", {"", 8, "<b>"}}, tested.offered, {"UTF8_STRING", {"", 8, "words"}}});
        EXPECT_EQ(contents(),
                  (std::vector<Contents>{{{"text/html", "<b>"}, {"image/png", std::nullopt}, {stringType, "words"}}}))
            << tested.name;
        // A later snapshot starts without that history.
        EXPECT_EQ(pasteboard().string(), Text(u"words")) << tested.name;
    }
}

TEST_F(Clipboard, CollectsDeliveredTypesDespiteDeadOnes) {
    const Bytes bytes = longBytes(200000);
    const OtherOwner owner({{"x-test/dead", {"", 8, "dead"}, Conduct::isSilent},
                            {"text/html", {"", 8, "<b>"}, Conduct::answersAfterALaterRequest},
                            {"image/png", {"", 8, bytes}, Conduct::answersInPieces},
                            {"image/bmp", {"", 8, longBytes(150000)}, Conduct::answersInPieces},
                            {"x-test/stops", {"", 8, bytes}, Conduct::stopsAfterOnePiece},
                            {"x-test/changes", {"", 8, bytes}, Conduct::changesItsMind},
                            {"x-test/refused", {"", 8, "no"}, Conduct::refuses},
                            {"UTF8_STRING", {"", 8, "words"}},
                            {"x-test/dead-too", {"", 8, "dead"}, Conduct::isSilent}});
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    const std::vector<std::pair<PasteboardType, std::optional<Bytes>>> expected{
        {"x-test/dead", std::nullopt},    {"text/html", "<b>"},           {"image/png", bytes},
        {"image/bmp", longBytes(150000)}, {"x-test/stops", std::nullopt}, {"x-test/changes", std::nullopt},
        {"x-test/refused", std::nullopt}, {stringType, "words"},          {"x-test/dead-too", std::nullopt},
    };
    for (int round = 0; round < 2; ++round) {
        for (const auto& [type, data] : expected) {
            // EXPECT_EQ would print all bytes.
            EXPECT_TRUE(items[0]->data(type) == data) << type << round;
        }
    }
    // Each target was requested once.
    EXPECT_EQ(owner.asked().size(), expected.size() + 1);
}

TEST_F(Clipboard, RequestsOnceFromASilentOwner) {
    const OtherOwner owner({{"text/html", {"", 8, "<b>"}, Conduct::isSilent},
                            {"image/png", {"", 8, "png"}, Conduct::isSilent},
                            {"UTF8_STRING", {"", 8, "words"}, Conduct::isSilent}});
    EXPECT_EQ(contents(), (std::vector<Contents>{
                              {{"text/html", std::nullopt}, {"image/png", std::nullopt}, {stringType, std::nullopt}}}));
    EXPECT_EQ(owner.asked(), (std::vector<std::string>{"TARGETS", "text/html", "image/png", "UTF8_STRING"}));
}

TEST_F(Clipboard, ReadsEverythingFromASlowOwner) {
    constexpr std::chrono::milliseconds work(600);
    const OtherOwner owner({{"text/html", {"", 8, "<b>"}, Conduct::answers, work},
                            {"image/png", {"", 8, "png"}, Conduct::answers, work},
                            {"text/rtf", {"", 8, "rtf"}, Conduct::answers, work},
                            {"UTF8_STRING", {"", 8, "words"}, Conduct::answers, work}});
    EXPECT_EQ(contents(),
              (std::vector<Contents>{
                  {{"text/html", "<b>"}, {"image/png", "png"}, {"text/rtf", "rtf"}, {stringType, "words"}}}));
}

TEST_F(Clipboard, IgnoresALateReply) {
    const OtherOwner owner(
        {{"UTF8_STRING", {"", 8, "words"}, Conduct::answersTheFirstLate}, {"text/html", {"", 8, "<b>"}}});
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_EQ(contents(), (std::vector<Contents>{{{stringType, "words"}, {"text/html", "<b>"}}}));
}

TEST_F(Clipboard, ReadsMoreTypesThanMayBePending) {
    std::vector<OfferedTarget> offered{{"x-test/dead", {"", 8, "dead"}, Conduct::isSilent}};
    Contents expected{{"x-test/dead", std::nullopt}};
    for (int number = 0; number < 1000; ++number) {
        expected.emplace_back("x-test/" + std::to_string(number), std::to_string(number));
        offered.push_back({expected.back().first, {"", 8, *expected.back().second}});
    }
    const OtherOwner owner(std::move(offered));
    EXPECT_EQ(contents(), std::vector<Contents>{expected});
}

TEST_F(Clipboard, SurvivesAnOwnerThatExits) {
    const OtherOwner owner(
        {{"image/png", {"", 8, longBytes(200000)}, Conduct::endsAfterOnePiece}, {"UTF8_STRING", {"", 8, "words"}}});
    const std::int64_t before = pasteboard().changeCount();
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->types(), (std::vector<PasteboardType>{"image/png", stringType}));
    EXPECT_EQ(items[0]->data("image/png"), std::nullopt);
    EXPECT_EQ(items[0]->types(), std::vector<PasteboardType>{});
    EXPECT_EQ(pasteboard().changeCount(), before + 1);
    EXPECT_EQ(pasteboard().string(), std::nullopt);
}

TEST_F(Clipboard, HandlesTenThousandTargets) {
    std::vector<OfferedTarget> offered;
    std::vector<std::pair<PasteboardType, Bytes>> data;
    for (int number = 0; number < 10000; ++number) {
        data.emplace_back("application/x-test-" + std::to_string(number), std::to_string(number));
        offered.push_back({data.back().first, {"", 8, data.back().second}});
    }
    {
        const OtherOwner owner(std::move(offered));
        const std::vector<Contents> all = contents();
        ASSERT_EQ(all.size(), 1U);
        ASSERT_EQ(all[0].size(), data.size());
        EXPECT_EQ(all[0][0].second, "0");
        for (std::size_t index = 0; index < data.size(); ++index) {
            const auto& [type, bytes] = all[0][index];
            EXPECT_EQ(type, data[index].first);
            // On a slow machine, not all of them are delivered before the timeout.
            EXPECT_TRUE(!bytes || bytes == data[index].second) << type;
        }
    }
    ASSERT_TRUE(put(data));
    const auto targets = whileServing(scheduling(), [] { return OtherReader().targets(); });
    EXPECT_EQ(targets.size(), data.size() + 3);
    const auto last = whileServing(scheduling(), [] { return OtherReader().read("application/x-test-9999"); });
    EXPECT_EQ(last, (PropertyValue{"application/x-test-9999", 8, "9999"}));
}

TEST_F(Clipboard, SkipsTargetsWithOverlongNames) {
    const OtherOwner owner({{std::string(60000, 'x'), {"STRING", 8, "long"}}, {"text/html", {"", 8, "<b>"}}});
    EXPECT_EQ(contents(), (std::vector<Contents>{{{"text/html", "<b>"}}}));
}

TEST_F(Clipboard, SurvivesReadersThatExit) {
    const Bytes bytes = longBytes(1000000);
    ASSERT_TRUE(put({{"image/png", bytes}}));
    for (const std::size_t pieces : {std::size_t{0}, std::size_t{1}, std::size_t{3}}) {
        EXPECT_TRUE(whileServing(scheduling(), [pieces] { return OtherReader().readSomePieces("image/png", pieces); }));
    }
    const auto read = whileServing(scheduling(), [] { return OtherReader().read("image/png"); });
    EXPECT_TRUE(read == (PropertyValue{"image/png", 8, bytes}));
}

TEST_F(Clipboard, RefusesInvalidRequests) {
    ASSERT_TRUE(put({{stringType, "words"}}));
    const bool isAnswered = whileServing(scheduling(), [] {
        OtherReader reader;
        ClipboardPeer& peer = reader.peer();
        for (const xcb_window_t requestor : {peer.owner(), xcb_window_t{0}, xcb_window_t{0x1fffffff}}) {
            xcb_selection_request_event_t event{};
            event.response_type = XCB_SELECTION_REQUEST;
            event.owner = peer.owner();
            event.requestor = requestor;
            event.selection = peer.atom("CLIPBOARD");
            event.target = peer.atom("UTF8_STRING");
            event.property = peer.atom("LOMARIS_CLOCK");
            char message[32] = {};
            std::copy_n(reinterpret_cast<const char*>(&event), sizeof event, message);
            xcb_send_event(peer.handle(), 0, peer.owner(), XCB_EVENT_MASK_NO_EVENT, message);
        }
        return !reader.read("image/png") && reader.readTogether({}).empty();
    });
    EXPECT_TRUE(isAnswered);
    EXPECT_EQ(whileServing(scheduling(), [] { return OtherReader().read("UTF8_STRING"); }),
              (PropertyValue{"UTF8_STRING", 8, "words"}));
    EXPECT_EQ(contents(), (std::vector<Contents>{{{stringType, "words"}}}));
}

}  // namespace
}  // namespace lomaris::test
