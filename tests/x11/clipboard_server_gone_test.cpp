#include "tests/support/running_program.h"
#include "tests/support/waiting.h"
#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/clipboard_successors.h"
#include "tests/x11/clipboard_world.h"

#include <unistd.h>

#include <cstdlib>

namespace lomaris::test {
namespace {

/// The clipboard of a second X server, which a test may freeze or end.
class ClipboardOfLostServer : public Clipboard {
protected:
    void SetUp() override {
        if (const std::string missing = missingPrograms({"Xvfb"}); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
        display_ = std::getenv("DISPLAY");
        authority_ = std::getenv("XAUTHORITY");
        unsetenv("XAUTHORITY");
        const std::string number = ":" + std::to_string(1000 + getpid() % 50000);
        server_ = std::make_unique<RunningProgram>(std::vector<std::string>{"Xvfb", number, "-noreset"});
        setenv("DISPLAY", number.c_str(), 1);
        ASSERT_TRUE(waitFor([] {
            xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
            const bool isThere = xcb_connection_has_error(connection) == 0;
            xcb_disconnect(connection);
            return isThere;
        }));
    }

    void TearDown() override {
        if (!display_.empty()) {
            setenv("DISPLAY", display_.c_str(), 1);
            setenv("XAUTHORITY", authority_.c_str(), 1);
        }
    }

    [[nodiscard]] RunningProgram& server() { return *server_; }

    void expectNoClipboard() {
        const std::int64_t count = pasteboard().changeCount();
        EXPECT_EQ(contents(), std::vector<Contents>{});
        EXPECT_EQ(pasteboard().string(), std::nullopt);
        pasteboard().clearContents();
        EXPECT_FALSE(pasteboard().writeItems(std::vector<NewPasteboardItem>(1)));
        scheduling().runLoopSlice(std::chrono::milliseconds(5));
        EXPECT_EQ(pasteboard().changeCount(), count);
    }

private:
    std::string display_;
    std::string authority_;
    std::unique_ptr<RunningProgram> server_;
};

TEST_F(ClipboardOfLostServer, IsUnavailableWithoutAServer) {
    for (const char* const display : {"", ":64999", "nonsense"}) {
        setenv("DISPLAY", display, 1);
        LinuxScheduling loop;
        LinuxPasteboard unavailable(loop, forkKeeper);
        EXPECT_EQ(unavailable.items().size(), 0U) << display;
        EXPECT_EQ(unavailable.string(), std::nullopt) << display;
        EXPECT_EQ(unavailable.changeCount(), 0) << display;
        unavailable.clearContents();
        EXPECT_FALSE(unavailable.writeItems({})) << display;
        EXPECT_EQ(unavailable.changeCount(), 0) << display;
    }
}

TEST_F(ClipboardOfLostServer, IsUnavailableIfTheServerExits) {
    ASSERT_TRUE(put({{stringType, "words"}}));
    server().end();
    expectNoClipboard();
}

TEST_F(ClipboardOfLostServer, IsUnavailableIfTheServerExitsDuringASlice) {
    ASSERT_TRUE(put({{stringType, "words"}}));
    server().end();
    scheduling().runLoopSlice(std::chrono::milliseconds(5));
    expectNoClipboard();
}

TEST_F(ClipboardOfLostServer, IsUnavailableIfTheServerHangs) {
    ASSERT_TRUE(put({{stringType, "words"}}));
    server().freeze();
    expectNoClipboard();
}

TEST_F(ClipboardOfLostServer, IsUnavailableIfTheServerExitsDuringServing) {
    ASSERT_TRUE(put({{"image/png", longBytes(3000000)}}));
    ASSERT_TRUE(whileServing(scheduling(), [] {
        OtherReader reader;
        return reader.readSomePieces("image/png", 2);
    }));
    const auto items = pasteboard().items();
    ASSERT_EQ(items.size(), 1U);
    server().end();
    expectNoClipboard();
    EXPECT_EQ(items[0]->types(), std::vector<PasteboardType>{});
}

TEST_F(ClipboardOfLostServer, IsUnavailableIfTheServerHangsDuringServing) {
    ASSERT_TRUE(put({{"image/png", longBytes(3000000)}}));
    // Together they request more than fits into the buffers of the connection.
    std::vector<OtherReader> readers(8);
    for (OtherReader& reader : readers) {
        ASSERT_TRUE(whileServing(scheduling(), [&reader] { return reader.ask("image/png"); }));
    }
    for (OtherReader& reader : readers) {
        ASSERT_EQ(reader.peer().takeProperty(reader.peer().atom("TEST_PASTE")).type, "INCR");
    }
    server().freeze();
    expectNoClipboard();
}

TEST_F(ClipboardOfLostServer, EndsTheKeeper) {
    const std::size_t before = successors().size();
    ASSERT_TRUE(put({{stringType, "words"}}));
    end();
    ASSERT_EQ(successors().size(), before + 1);
    server().end();
    EXPECT_TRUE(successorsBecome(before));
}

TEST_F(ClipboardOfLostServer, CallsNoProviderAtTheEnd) {
    const auto provider = std::make_shared<TestProvider>("words");
    ASSERT_TRUE(putPromise(provider));
    server().end();
    end();
    EXPECT_EQ(provider->asked, std::vector<PasteboardType>{});
}

}  // namespace
}  // namespace lomaris::test
