#include "tests/support/process.h"
#include "tests/support/running_program.h"
#include "tests/support/waiting.h"
#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/clipboard_world.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace lomaris::test {
namespace {

/// Targets that a word processor may offer.
std::vector<OfferedTarget> document() {
    return {
        {"UTF8_STRING", {"", 8, "caf\xc3\xa9"}},
        {"STRING", {"", 8, "caf\xe9"}},
        {"TEXT", {"UTF8_STRING", 8, "caf\xc3\xa9"}},
        {"text/html", {"", 8, "<b>caf\xc3\xa9</b>"}},
        {"image/png", {"", 8, Bytes("\x89PNG\r\n\x1a\n\0\0", 10)}},
        {"application/x-empty", {"", 8, ""}},
        {"TEST_SPAN", {"INTEGER", 32, Bytes("\1\0\0\0\2\0\0\0", 8)}},
        {"TEST_SHORTS", {"TEST_SHORT", 16, Bytes("\1\0\2\0", 4)}},
    };
}

/// Saves the contents of the clipboard, writes others, and restores the saved ones.
void disturbAndRestore(Clipboard& clipboard) {
    std::vector<NewPasteboardItem> saved;
    for (Clipboard::Contents& item : clipboard.contents()) {
        NewPasteboardItem& copy = saved.emplace_back();
        for (auto& [type, bytes] : item) {
            if (bytes) {
                copy.data.emplace_back(type, std::move(*bytes));
            }
        }
    }
    ASSERT_TRUE(clipboard.putPromise(std::make_shared<TestProvider>("private"), {{concealedType, ""}}));
    ASSERT_TRUE(clipboard.put(std::move(saved)));
}

TEST_F(Clipboard, RestoresAllTargetsAndBytesOfAnotherProgram) {
    std::vector<std::string> targets;
    std::vector<PropertyValue> values;
    {
        const OtherOwner owner(document());
        OtherReader reader;
        targets = reader.targets();
        for (const OfferedTarget& offered : document()) {
            values.push_back(reader.read(offered.target).value_or(PropertyValue{"none", 0, ""}));
        }
        disturbAndRestore(*this);
    }
    targets.insert(targets.end(), {"MULTIPLE", "TIMESTAMP"});
    std::sort(targets.begin(), targets.end());
    EXPECT_EQ(whileServing(scheduling(), [] { return OtherReader().targets(); }), targets);
    const auto restored = whileServing(scheduling(), [] {
        OtherReader reader;
        std::vector<PropertyValue> read;
        for (const OfferedTarget& offered : document()) {
            read.push_back(reader.read(offered.target).value_or(PropertyValue{"none", 0, ""}));
        }
        return read;
    });
    ASSERT_EQ(restored.size(), values.size());
    for (std::size_t index = 0; index < values.size(); ++index) {
        EXPECT_EQ(restored[index], values[index]) << document()[index].target;
    }
}

TEST_F(Clipboard, RestoresPlainTextOfAnyPropertyType) {
    for (const PropertyValue& value :
         {PropertyValue{"TEXT", 8, "caf\xc3\xa9"}, PropertyValue{"C_STRING", 8, "caf\xe9"},
          PropertyValue{"text/plain;charset=utf-8", 8, "caf\xc3\xa9"}, PropertyValue{"COMPOUND_TEXT", 8, "caf\xe9"},
          PropertyValue{"UTF8_STRING", 16, "four"}, PropertyValue{"UTF8_STRING", 32, "four"}}) {
        {
            const OtherOwner owner({{"UTF8_STRING", value}, {"text/html", {"", 8, "<b>"}}});
            EXPECT_EQ(contents(), (std::vector<Contents>{{{stringType, value.bytes}, {"text/html", "<b>"}}}));
            disturbAndRestore(*this);
        }
        EXPECT_EQ(whileServing(scheduling(), [] { return OtherReader().read("UTF8_STRING"); }), value)
            << value.type << value.format;
    }
}

TEST_F(Clipboard, HasOneItemWithTheTypesOfAnotherProgram) {
    const OtherOwner owner({{"text/html", {"", 8, "<b>"}}, {"UTF8_STRING", {"", 8, "words"}}});
    EXPECT_EQ(contents(), (std::vector<Contents>{{{"text/html", "<b>"}, {stringType, "words"}}}));
    EXPECT_EQ(owner.asked(), (std::vector<std::string>{"TARGETS", "text/html", "UTF8_STRING"}));
}

TEST_F(Clipboard, DropsTrailingNulsOnlyFromPlainText) {
    struct Case {
        Bytes bytes;
        Text text;
    };
    const std::vector<Case> cases{
        {Bytes("words\0", 6), u"words"},
        {Bytes("words\0\0", 7), u"words"},
        {Bytes("a\0b\0", 4), Text(u"a\0b", 3)},
        {Bytes("\0words", 6), Text(u"\0words", 6)},
        {Bytes("\0\0", 2), u""},
        {"", u""},
    };
    for (const char* const target : {"UTF8_STRING", "text/plain;charset=utf-8", "STRING", "text/plain"}) {
        for (const Case& tested : cases) {
            const OtherOwner owner({{target, {"", 8, tested.bytes}}});
            EXPECT_EQ(pasteboard().string(), tested.text) << target;
            // The restored contents have the NULs.
            ASSERT_EQ(contents().size(), 1U) << target;
            EXPECT_EQ(contents()[0][0].second, tested.bytes) << target;
        }
    }
}

TEST_F(Clipboard, NeverRequestsTargetsWithSideEffects) {
    std::vector<OfferedTarget> offered;
    for (const char* const target :
         {"MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "DELETE", "INSERT_SELECTION", "INSERT_PROPERTY", "text/html"}) {
        offered.push_back({target, {"", 8, "answer"}});
    }
    const OtherOwner owner(std::move(offered));
    EXPECT_EQ(contents(), (std::vector<Contents>{{{"text/html", "answer"}}}));
    EXPECT_EQ(owner.asked(), (std::vector<std::string>{"TARGETS", "text/html"}));
}

TEST_F(Clipboard, IsEmptyWithoutAnOwner) {
    { const OtherOwner owner({{"UTF8_STRING", {"", 8, "words"}}}); }
    EXPECT_EQ(contents(), std::vector<Contents>{});
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    disturbAndRestore(*this);
    EXPECT_EQ(contents(), std::vector<Contents>{});
    EXPECT_EQ(whileServing(scheduling(), [] { return OtherReader().targets(); }),
              (std::vector<std::string>{"MULTIPLE", "TARGETS", "TIMESTAMP"}));
}

TEST_F(Clipboard, TransfersLongContentsInBothDirections) {
    for (const std::size_t size : {std::size_t{1} << 20U, std::size_t{20} << 20U}) {
        const Bytes bytes = longBytes(size);
        {
            const OtherOwner owner({{"image/png", {"", 8, bytes}, Conduct::answersInPieces}});
            disturbAndRestore(*this);
        }
        const auto read = whileServing(scheduling(), [] { return OtherReader().read("image/png"); });
        // EXPECT_EQ would print all bytes.
        EXPECT_TRUE(read == (PropertyValue{"image/png", 8, bytes})) << size;
    }
}

TEST_F(Clipboard, TransfersLengthsAroundThePieceSize) {
    for (const std::size_t size : {0UL, 1UL, 98303UL, 98304UL, 98305UL, 196608UL, 262144UL, 1048576UL, 1048577UL}) {
        const Bytes bytes = longBytes(size);
        {
            const OtherOwner owner(
                {{"image/png", {"", 8, bytes}}, {"image/x", {"", 8, bytes}, Conduct::answersInPieces}});
            EXPECT_TRUE(contents() == (std::vector<Contents>{{{"image/png", bytes}, {"image/x", bytes}}})) << size;
            disturbAndRestore(*this);
        }
        const auto read = whileServing(scheduling(), [] { return OtherReader().read("image/x"); });
        EXPECT_TRUE(read == (PropertyValue{"image/x", 8, bytes})) << size;
    }
}

TEST_F(Clipboard, ServesTheFirstItemThatHasATarget) {
    std::vector<NewPasteboardItem> items(2);
    items[0].data = {{stringType, "first"}, {"text/uri-list", "file:///a"}};
    items[1].data = {{stringType, "second"}, {"text/html", "<i>"}};
    ASSERT_TRUE(put(std::move(items)));
    EXPECT_EQ(contents(), (std::vector<Contents>{{{stringType, "first"}, {"text/uri-list", "file:///a"}},
                                                 {{stringType, "second"}, {"text/html", "<i>"}}}));
    EXPECT_EQ(pasteboard().string(), Text(u"first\nsecond"));
    const auto read = whileServing(scheduling(), [] {
        return OtherReader().readTogether({"UTF8_STRING", "text/html"});
    });
    EXPECT_EQ(read, (std::vector<std::optional<PropertyValue>>{PropertyValue{"UTF8_STRING", 8, "first"},
                                                               PropertyValue{"text/html", 8, "<i>"}}));
}

TEST_F(Clipboard, ExchangesTextWithAnotherTool) {
    if (const std::string missing = missingPrograms({"xclip"}); !missing.empty()) {
        GTEST_SKIP() << missing;
    }
    const std::string file = testing::TempDir() + "lomaris-clipboard-" + std::to_string(getpid());
    std::ofstream(file) << "na\xc3\xafve";
    const std::int64_t before = pasteboard().changeCount();
    const RunningProgram owner({"xclip", "-quiet", "-in", "-selection", "clipboard", file});
    ASSERT_TRUE(waitFor([&] { return pasteboard().changeCount() != before; }));
    std::filesystem::remove(file);
    EXPECT_EQ(pasteboard().string(), Text(u"na\u00efve"));
    disturbAndRestore(*this);
    const auto result = whileServing(scheduling(), [] {
        return runProcess({"xclip", "-out", "-selection", "clipboard", "-target", "UTF8_STRING"});
    });
    EXPECT_EQ(result, (ProcessResult{0, "na\xc3\xafve", ""}));
}

TEST_F(Clipboard, ReadsTextFromEveryTextTarget) {
    struct Case {
        std::vector<OfferedTarget> offered;
        std::optional<Text> expected;
    };
    const std::vector<Case> cases{
        {{{"UTF8_STRING", {"", 8, "\xc3\xa9"}}, {"STRING", {"", 8, "other"}}}, u"\u00e9"},
        {{{"text/plain;charset=utf-8", {"", 8, "\xc3\xa9"}}, {"STRING", {"", 8, "other"}}}, u"\u00e9"},
        {{{"STRING", {"", 8, "\xe9"}}, {"text/plain", {"", 8, "other"}}}, u"\u00e9"},
        {{{"text/plain", {"", 8, "plain"}}}, u"plain"},
        {{{"UTF8_STRING", {"STRING", 8, "\xe9"}}}, u"\u00e9"},
        {{{"UTF8_STRING", {"", 8, "a\xff"}}}, u"a\ufffd"},
        {{{"UTF8_STRING", {"", 8, ""}}}, u""},
        {{{"UTF8_STRING", {"", 32, "four"}}, {"STRING", {"", 8, "narrow"}}}, u"narrow"},
        {{{"text/html", {"", 8, "<b>"}}}, std::nullopt},
    };
    for (std::size_t index = 0; index < cases.size(); ++index) {
        const OtherOwner owner(cases[index].offered);
        EXPECT_EQ(pasteboard().string(), cases[index].expected) << index;
    }
}

}  // namespace
}  // namespace lomaris::test
