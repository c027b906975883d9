#include "accessibility/model/guard_trace.h"
#include "tests/service/service_world.h"

#include <chrono>

namespace lomaris {
namespace {

using test::Lines;

using namespace std::chrono_literals;

class AppSelectionSessions : public test::ServiceWorld {
protected:
    std::unique_ptr<AppSelectionSession> capture() { return service->captureSelection(options); }

    std::optional<BridgeError> captureError() {
        return test::thrownBy([this] { return capture(); });
    }
    std::optional<BridgeError> chatError() {
        return test::thrownBy([this] { return service->captureSelectionOrChat(options); });
    }
    static std::optional<BridgeError> replace(AppSelectionSession& session, TextView replacement = u"red fox") {
        return test::thrownBy([&] {
            session.replaceIfCurrent(replacement);
            return 0;
        });
    }

    static void expectReason(ReplacementGuardTrace::Reason reason, std::int64_t error = 0) {
        const auto trace = ReplacementGuardTrace::shared().snapshot();
        EXPECT_EQ(trace.at(0).second, static_cast<std::int64_t>(reason));
        EXPECT_EQ(trace.at(1).second, error);
    }

    /// Brings another application to the front, whose text area is focused.
    void bringToFront(TextView bundleIdentifier, std::optional<Text> name = u"Other") {
        const auto other = desktop.addApplication(900, Text(bundleIdentifier), std::move(name));
        other.element().answers(attribute::focusedUIElement, otherText(other).element());
        desktop.bringToFront(900);
    }
    static SimulatedTextElement otherText(const SimulatedApplication& application) {
        return application.addTextElement(u"ls -l", TextRange{0, 5});
    }

    SelectionReadOptions options{.limits = {.before = 500, .after = 500}, .allowClipboardFallback = true};
};

// The details.

TEST_F(AppSelectionSessions, ReturnTheDetailsOfTheCapture) {
    text.select({4, 5});
    options.limits.before = 2;
    options.limits.after = 3;
    EXPECT_EQ(capture()->details(), (AppSelectionDetails{.applicationName = u"Notes",
                                                         .selectedText = u"quick",
                                                         .contextBefore = u"e ",
                                                         .contextAfter = u" br",
                                                         .selectionMethod = u"accessibility",
                                                         .usesClipboardFallback = false}));
}

TEST_F(AppSelectionSessions, ReturnAnEmptyNameForANamelessApplication) {
    bringToFront(u"com.example.other", std::nullopt);
    EXPECT_EQ(capture()->details().applicationName, u"");
}

TEST_F(AppSelectionSessions, ReportTheClipboardIfTheSelectionWasCopied) {
    hideSelection();
    EXPECT_EQ(capture()->details(), (AppSelectionDetails{.applicationName = u"Notes",
                                                         .selectedText = u"brown fox",
                                                         .contextBefore = u"",
                                                         .contextAfter = u"",
                                                         .selectionMethod = u"keyboardClipboardFallback",
                                                         .usesClipboardFallback = true}));
}

TEST_F(AppSelectionSessions, ReportTheClipboardIfTheElementCannotBeWritten) {
    forbidWriting();
    EXPECT_EQ(capture()->details(), (AppSelectionDetails{.applicationName = u"Notes",
                                                         .selectedText = u"brown fox",
                                                         .contextBefore = u"The quick ",
                                                         .contextAfter = u"",
                                                         .selectionMethod = u"accessibility",
                                                         .usesClipboardFallback = true}));
}

TEST_F(AppSelectionSessions, KeepTheirDetailsIfTheSelectionChanges) {
    const auto session = capture();
    const auto details = session->details();
    text.setText(u"something else", {0, 9});
    EXPECT_EQ(replace(*session), BridgeError::selectionChanged());
    EXPECT_EQ(session->details(), details);
}

// The input.

TEST_F(AppSelectionSessions, RefuseInputSinceTheCaptureIfNotSubmitted) {
    text.answers(attribute::selectedTextRange, AXError::noValue);
    const auto session = capture();
    desktop.userTypes();
    EXPECT_EQ(replace(*session), BridgeError::selectionChanged());
    expectReason(ReplacementGuardTrace::Reason::activityOrRange);
    EXPECT_EQ(text.text(), u"The quick brown fox");
}

TEST_F(AppSelectionSessions, ReplaceWithoutSubmissionAndInput) {
    text.answers(attribute::selectedTextRange, AXError::noValue);
    EXPECT_EQ(replace(*capture()), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(AppSelectionSessions, SampleOnlyTheFourCountersWhenSubmitted) {
    const auto session = capture();
    const auto start = static_cast<std::ptrdiff_t>(desktop.journal().size());
    session->markSubmitted();
    EXPECT_EQ(Lines(desktop.journal().begin() + start, desktop.journal().end()),
              (Lines{"0.000000000 inputCounter(10) -> 1", "0.000000000 inputCounter(1) -> 2",
                     "0.000000000 inputCounter(3) -> 3", "0.000000000 inputCounter(25) -> 4"}));
}

TEST_F(AppSelectionSessions, AcceptInputBeforeTheSubmissionButNotAfter) {
    text.answers(attribute::selectedTextRange, AXError::noValue);
    const auto session = capture();
    desktop.userTypes();
    desktop.userClicks(InputEventType::otherMouseDown);
    session->markSubmitted();
    desktop.userClicks(InputEventType::rightMouseDown);
    EXPECT_EQ(replace(*session), BridgeError::selectionChanged());
    expectReason(ReplacementGuardTrace::Reason::activityOrRange);

    session->markSubmitted();
    EXPECT_EQ(replace(*session), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(AppSelectionSessions, ReplaceDespiteInputIfTheRangeIsTheSame) {
    const auto session = capture();
    desktop.userTypes();
    EXPECT_EQ(replace(*session), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

// The replacement.

TEST_F(AppSelectionSessions, ReplaceAgainIfTheSelectionIsBack) {
    const auto session = capture();
    EXPECT_EQ(replace(*session, u"red fox"), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
    text.select({10, 7});
    EXPECT_EQ(replace(*session, u"old fox"), BridgeError::selectionChanged());
    expectReason(ReplacementGuardTrace::Reason::textChanged);
    text.setText(u"The quick brown fox", {10, 9});
    EXPECT_EQ(replace(*session, u"old fox"), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick old fox");
}

TEST_F(AppSelectionSessions, ReplaceWithAnEmptyText) {
    EXPECT_EQ(replace(*capture(), u""), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick ");
}

TEST_F(AppSelectionSessions, ReportTheCodeOfARefusedWrite) {
    const auto session = capture();
    text.answersSet(attribute::selectedText, AXError::notImplemented);
    EXPECT_EQ(replace(*session), BridgeError::replacementFailed(AXError::notImplemented));
}

TEST_F(AppSelectionSessions, RefuseIfAnotherApplicationIsFrontmost) {
    const auto session = capture();
    bringToFront(u"com.example.notes");
    EXPECT_EQ(replace(*session), BridgeError::selectionChanged());
    expectReason(ReplacementGuardTrace::Reason::notFrontmost);
}

TEST_F(AppSelectionSessions, ReplaceInAnApplicationWithoutIdentifier) {
    const auto nameless = desktop.addApplication(901, std::nullopt, std::nullopt);
    const auto field = nameless.addTextElement(u"The quick brown fox", TextRange{10, 9});
    nameless.element().answers(attribute::focusedUIElement, field.element());
    desktop.bringToFront(901);
    EXPECT_EQ(replace(*capture()), std::nullopt);
    EXPECT_EQ(field.text(), u"The quick red fox");
}

TEST_F(AppSelectionSessions, NeverUseAForbiddenClipboard) {
    options.allowClipboardFallback = false;
    const auto session = capture();
    forbidWriting();
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(replace(*session), BridgeError::selectionChanged());
        expectReason(ReplacementGuardTrace::Reason::rereadFailed, 4);
    }
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(AppSelectionSessions, PasteIfTheElementIsNoLongerWritable) {
    const auto session = capture();
    forbidWriting();
    EXPECT_EQ(replace(*session), std::nullopt);
    EXPECT_EQ(desktop.postedKeyStrokes(), (std::vector<PostedKeyStroke>{posted(key_stroke::paste, 0ms)}));
}

// Lifetime.

TEST_F(AppSelectionSessions, OutliveTheService) {
    const auto session = capture();
    service.reset();
    session->markSubmitted();
    EXPECT_EQ(replace(*session), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(AppSelectionSessions, RestoreTheClipboardAfterTheirDestruction) {
    hideSelection();
    auto session = capture();
    service.reset();
    EXPECT_EQ(replace(*session), std::nullopt);
    session.reset();
    // The second search for the Copy command was 50 ms after the first one.
    const Moment pasted = desktop.now();
    EXPECT_EQ(pasted, 50ms);
    EXPECT_NE(desktop.pasteboardContents(), clipboard);
    test::turnFor(desktop, 290ms);
    EXPECT_NE(desktop.pasteboardContents(), clipboard);
    test::turnFor(desktop, 10ms);
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(AppSelectionSessions, KeepTheStagedTextIfTheMainQueueDoesNotRun) {
    forbidWriting();
    auto session = capture();
    EXPECT_EQ(replace(*session), std::nullopt);
    session.reset();
    service.reset();
    desktop.scheduling().sleep(5s);
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"red fox");
}

// Captures that are refused.

TEST_F(AppSelectionSessions, AreRefusedIfTheClipboardIsNeededButForbidden) {
    options.allowClipboardFallback = false;
    forbidWriting();
    EXPECT_EQ(captureError(), BridgeError::clipboardFallbackDisabled());
    EXPECT_EQ(chatError(), BridgeError::clipboardFallbackDisabled());
    hideSelection();
    EXPECT_EQ(captureError(), BridgeError::clipboardFallbackDisabled());
    EXPECT_EQ(chatError(), BridgeError::clipboardFallbackDisabled());
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(AppSelectionSessions, AreCreatedByTheShortcut) {
    EXPECT_EQ(service->captureSelectionOrChat(options)->details(), capture()->details());
}

TEST_F(AppSelectionSessions, AreRefusedInAFileManagerUnderTheShortcut) {
    bringToFront(u"com.apple.finder");
    EXPECT_EQ(capture()->details().selectedText, u"ls -l");
    const auto start = desktop.journal().size();
    EXPECT_EQ(chatError(), BridgeError::noTextSelected());
    EXPECT_EQ(desktop.journal().size(), start + 1);
    EXPECT_NE(desktop.journal().back().find("frontmostApplication()"), std::string::npos);
}

class TerminalSessions : public AppSelectionSessions {
protected:
    TerminalSessions() {
        terminal.element().answers(attribute::focusedUIElement, screen.element());
        desktop.bringToFront(950);
    }

    void addCopyMenu(bool enabled) {
        terminal.addMenuBar({{u"Edit", {{.title = u"Copy", .commandCharacter = u"c", .enabled = enabled}}}})
            .item(u"Edit", u"Copy")
            .onAction(action::press, copies(u"as copied"));
    }

    SimulatedApplication terminal = desktop.addApplication(950, u"com.apple.Terminal", u"Terminal");
    SimulatedTextElement screen = terminal.addTextElement(u"$ ls -l", TextRange{2, 5});
};

TEST_F(TerminalSessions, AreCreatedUnderTheShortcutWithARange) {
    EXPECT_EQ(service->captureSelectionOrChat(options)->details().selectedText, u"ls -l");
}

TEST_F(TerminalSessions, AreRefusedUnderTheShortcutWithoutARangeOrCopy) {
    addCopyMenu(false);
    for (const auto& range : {answer(AXError::noValue), answer(TextRange{2, 0})}) {
        screen.answers(attribute::selectedTextRange, range);
        EXPECT_EQ(chatError(), BridgeError::noTextSelected());
    }
    EXPECT_EQ(capture()->details().selectedText, u"ls -l");
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(TerminalSessions, AreCreatedUnderTheShortcutIfTheTerminalCopies) {
    addCopyMenu(true);
    screen.answers(attribute::selectedTextRange, AXError::noValue);
    EXPECT_EQ(service->captureSelectionOrChat(options)->details(),
              (AppSelectionDetails{.applicationName = u"Terminal",
                                   .selectedText = u"as copied",
                                   .contextBefore = u"",
                                   .contextAfter = u"",
                                   .selectionMethod = u"keyboardClipboardFallback",
                                   .usesClipboardFallback = true}));
}

TEST_F(TerminalSessions, FailUnderTheShortcutIfTheTerminalDoesNotCopy) {
    screen.answers(attribute::selectedTextRange, AXError::noValue);
    EXPECT_EQ(chatError(), BridgeError::clipboardFallbackFailed(
                               u"the target application did not respond to Cmd+C after 2 attempt(s)"));
    // 50 ms to the second search for a Copy command, two attempts of 1 s, and a pause of 80 ms between them.
    EXPECT_EQ(desktop.now(), 2130ms);
}

}  // namespace
}  // namespace lomaris
