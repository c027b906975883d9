#include "tests/real/terminal.h"
#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/real/guarded_request.h"
#include "tests/support/process.h"
#include "tests/support/waiting.h"
#include "tests/x11/key_window.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

constexpr KeyStroke copyKey{8, commandFlag};
constexpr KeyStroke pasteKey{9, commandFlag};
constexpr KeyStroke deleteKey{51, 0};

const ProcessResult noKeys{1, "",
                           "Lomaris macOS bridge: Keyboard/clipboard fallback failed: could not create keyboard "
                           "events\n"};
const ProcessResult nothingSelected{1, "", "Lomaris macOS bridge: Select some text first.\n"};

/// The expected results of the commands that use the selection.
struct Expected {
    ProcessResult read;
    ProcessResult replace;
    ProcessResult replaceAddress;
    ProcessResult replaceRequest;
    /// True if `compatibility-check` is expected to succeed.
    bool isCompatible = false;
};

/// The terminal exposes nothing, and has no keys.
Expected nothingIsRead() {
    return {.read = noKeys, .replace = noKeys, .replaceAddress = noKeys, .replaceRequest = requestRefused};
}

/// The terminal exposes the word, and has no key to replace it.
Expected wordIsRead() {
    return {.read = {0, std::string(Terminal::word) + "\n", ""},
            .replace = noKeys,
            .replaceAddress = noKeys,
            .replaceRequest = noKeys,
            .isCompatible = true};
}

class TerminalTest : public testing::Test {
protected:
    static std::unique_ptr<Terminal> start(const TerminalProgram& program) {
        return missingFor(program).empty() ? std::make_unique<Terminal>(program) : nullptr;
    }

    [[nodiscard]] EventServices& events() { return platform_->events(); }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

/// Requests the replacement of the selection, or of the word if the selection cannot be read.
ProcessResult replaceByRequest(const Terminal& terminal) {
    if (runTool({"read-selection"}).status == 0) {
        return replaceIfCurrent(requestFor(readSelection(), "never\n"));
    }
    return replaceIfCurrent(
        {{"expectedText", Terminal::word},
         {"expectedProcessIdentifier", terminal.processIdentifier()},
         {"expectedInputActivity",
          {{"keyDownCount", 0}, {"leftMouseDownCount", 0}, {"otherMouseDownCount", 0}, {"rightMouseDownCount", 0}}},
         {"replacementText", "never\n"}});
}

/// Runs every command; none of them may reach the job or change the clipboard.
void expectNothingReceived(const Terminal& terminal, const Expected& expected) {
    const UserClipboard clipboard;
    EXPECT_EQ(runTool({"permission-status"}).output, "granted\n");
    EXPECT_EQ(runTool({"read-selection"}), expected.read);
    EXPECT_EQ(runTool({"replace-selection", "--replacement", "never\n"}), expected.replace);
    EXPECT_EQ(runTool({"replace-selection", "--replacement", "https://never.example"}), expected.replaceAddress);
    EXPECT_EQ(replaceByRequest(terminal), expected.replaceRequest);
    EXPECT_EQ(runTool({"diagnose-selection"}).status, 0);
    EXPECT_EQ(runTool({"compatibility-check"}).status == 0, expected.isCompatible);
    EXPECT_TRUE(UserClipboard::isIntact());
    EXPECT_EQ(terminal.received(), "");
    // The job records everything that it receives.
    pressKeys({"x"});
    EXPECT_TRUE(waitFor([&] { return terminal.received() == "x"; })) << terminal.received();
    pressKeys({"ctrl+c"});
    EXPECT_TRUE(waitFor([&] { return terminal.received() == "xINT "; })) << terminal.received();
}

TEST_F(TerminalTest, XTermJobReceivesNothingWithNothingSelected) {
    const auto terminal = start(xterm());
    if (!terminal) {
        GTEST_SKIP() << missingFor(xterm());
    }
    expectNothingReceived(*terminal, nothingIsRead());
}

TEST_F(TerminalTest, XTermJobReceivesNothingWithASelection) {
    const auto terminal = start(xterm());
    if (!terminal) {
        GTEST_SKIP() << missingFor(xterm());
    }
    terminal->selectWord();
    expectNothingReceived(*terminal, nothingIsRead());
}

TEST_F(TerminalTest, XfceTerminalJobReceivesNothingWithNothingSelected) {
    const auto terminal = start(xfceTerminal());
    if (!terminal) {
        GTEST_SKIP() << missingFor(xfceTerminal());
    }
    expectNothingReceived(*terminal, {.read = nothingSelected,
                                      .replace = nothingSelected,
                                      .replaceAddress = nothingSelected,
                                      .replaceRequest = requestRefused});
}

TEST_F(TerminalTest, XfceTerminalJobReceivesNothingWithASelection) {
    const auto terminal = start(xfceTerminal());
    if (!terminal) {
        GTEST_SKIP() << missingFor(xfceTerminal());
    }
    terminal->selectWord();
    const ProcessResult read{0, std::string(Terminal::word) + "\n", ""};
    expectNothingReceived(
        *terminal,
        {.read = read, .replace = noKeys, .replaceAddress = noKeys, .replaceRequest = noKeys, .isCompatible = true});
}

TEST_F(TerminalTest, UnlistedTerminalIsRecognizedByItsRole) {
    const auto terminal = start(xfceTerminal());
    if (!terminal) {
        GTEST_SKIP() << missingFor(xfceTerminal());
    }
    terminal->setClass("Unlisted");
    for (const KeyStroke keyStroke : {copyKey, pasteKey, deleteKey}) {
        EXPECT_EQ(events().createKeyStroke(keyStroke), nullptr) << keyStroke.keyCode;
    }
    terminal->selectWord();
    expectNothingReceived(*terminal, wordIsRead());
}

TEST_F(TerminalTest, XfceTerminalHasOnlyAKeyForCopy) {
    const auto terminal = start(xfceTerminal());
    if (!terminal) {
        GTEST_SKIP() << missingFor(xfceTerminal());
    }
    terminal->selectWord();
    EXPECT_EQ(events().createKeyStroke(pasteKey), nullptr);
    EXPECT_EQ(events().createKeyStroke(deleteKey), nullptr);
    const auto copy = events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    events().postToSession(*copy);
    EXPECT_TRUE(waitFor([] {
        return runProcess({"xclip", "-out", "-selection", "clipboard"}).output == Terminal::word;
    }));
    EXPECT_EQ(terminal->received(), "");
}

TEST_F(TerminalTest, XTermHasNoKeys) {
    const auto terminal = start(xterm());
    if (!terminal) {
        GTEST_SKIP() << missingFor(xterm());
    }
    for (const KeyStroke keyStroke : {copyKey, pasteKey, deleteKey}) {
        EXPECT_EQ(events().createKeyStroke(keyStroke), nullptr) << keyStroke.keyCode;
    }
}

TEST_F(TerminalTest, ReceivesNothingThatWasCreatedForAnotherWindow) {
    for (const TerminalProgram& program : {xterm(), xfceTerminal()}) {
        if (const std::string missing = missingFor(program); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
        KeyWindow window;
        std::vector<std::unique_ptr<KeyStrokeEvents>> strokes;
        for (const KeyStroke keyStroke : {copyKey, pasteKey, deleteKey}) {
            strokes.push_back(events().createKeyStroke(keyStroke));
            ASSERT_NE(strokes.back(), nullptr);
        }
        const Terminal terminal(program);
        for (const auto& stroke : strokes) {
            events().postToSession(*stroke);
            events().postToProcess(*stroke, terminal.processIdentifier());
        }
        pressKeys({"x"});
        EXPECT_TRUE(waitFor([&] { return !terminal.received().empty(); })) << program.name;
        EXPECT_EQ(terminal.received(), "x") << program.name;
        EXPECT_EQ(window.takeKeys(), std::vector<std::string>()) << program.name;
    }
}

}  // namespace
}  // namespace lomaris::test
