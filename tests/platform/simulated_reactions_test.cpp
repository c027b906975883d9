// Reactions of applications to key strokes and actions.

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

constexpr KeyStroke copyKey{8, commandFlag};
constexpr KeyStroke pasteKey{9, commandFlag};
constexpr KeyStroke deleteKey{51, 0};

const PasteboardType stringType{pasteboard_type::string};
const PasteboardType imageType{"public.png"};

void press(SimulatedDesktop& desktop, KeyStroke keyStroke) {
    desktop.events().postToSession(*desktop.events().createKeyStroke(keyStroke));
}

void pressIn(SimulatedDesktop& desktop, KeyStroke keyStroke, ProcessIdentifier process) {
    desktop.events().postToProcess(*desktop.events().createKeyStroke(keyStroke), process);
}

/// A provider that supplies "promised" and counts the requests.
class TextProvider final : public PasteboardDataProvider {
public:
    void provideData(PromisedItem& item, const PasteboardType& type) override {
        ++asked;
        item.setData("promised", type);
    }

    int asked = 0;
};

std::shared_ptr<TextProvider> promiseText(SimulatedDesktop& desktop) {
    const auto provider = std::make_shared<TextProvider>();
    std::vector<NewPasteboardItem> items(1);
    items[0].promisedTypes.push_back(stringType);
    items[0].provider = provider;
    desktop.pasteboard().clearContents();
    EXPECT_TRUE(desktop.pasteboard().writeItems(std::move(items)));
    return provider;
}

/// Notes is frontmost and has a text of which "brown fox" is selected; Mail is behind it.
class SimulatedReactions : public testing::Test {
protected:
    SimulatedReactions() { desktop.bringToFront(812); }

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedApplication mail = desktop.addApplication(913, u"com.example.mail", u"Mail");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", {10, 9});
};

TEST_F(SimulatedReactions, AKeyStrokeReachesTheFrontOrTheGivenProcess) {
    Lines reached;
    notes.onCopy([&reached] { reached.emplace_back("notes"); });
    mail.onCopy([&reached] { reached.emplace_back("mail"); });
    press(desktop, copyKey);
    pressIn(desktop, copyKey, 913);
    pressIn(desktop, copyKey, 812);
    pressIn(desktop, copyKey, 4711);
    desktop.bringToFront(913);
    press(desktop, copyKey);
    desktop.leaveNothingInFront();
    press(desktop, copyKey);
    desktop.quit(913);
    pressIn(desktop, copyKey, 913);
    EXPECT_EQ(reached, (Lines{"notes", "mail", "notes", "mail"}));
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 7U) << "every stroke is remembered, whoever it reaches";
}

TEST_F(SimulatedReactions, EachKeyStrokeAndFlagsHaveTheirOwnReaction) {
    Lines reached;
    const auto note = [&reached](const char* name) { return [&reached, name] { reached.emplace_back(name); }; };
    notes.onCopy(note("copy")).onPaste(note("paste")).onDelete(note("delete")).onKeyStroke({8, 0}, note("c"));
    for (const KeyStroke keyStroke : {copyKey, pasteKey, deleteKey, KeyStroke{8, 0}, KeyStroke{51, commandFlag}}) {
        press(desktop, keyStroke);
    }
    EXPECT_EQ(reached, (Lines{"copy", "paste", "delete", "c"}));
}

TEST_F(SimulatedReactions, AnUnscriptedKeyStrokeDoesNothing) {
    press(desktop, copyKey);
    notes.onCopy(ignores());
    press(desktop, copyKey);
    notes.onCopyInTurn({});
    press(desktop, copyKey);
    EXPECT_EQ(desktop.pasteboardContents(), std::vector<StandingItem>{});
    EXPECT_EQ(desktop.pasteboard().changeCount(), 100);
}

TEST_F(SimulatedReactions, CopyingWritesTheScriptedContents) {
    struct Case {
        const char* name;
        Reaction reaction;
        std::vector<StandingItem> expected;
        std::int64_t changeCount;
    };
    const CopiedItem rich{{{stringType, "rich"}, {"public.html", "<b>rich</b>"}}, {}};
    const std::vector<Case> cases{
        {"a text", copies(u"caf\u00e9"), {{{{stringType, "caf\xc3\xa9"}}, {}}}, 102},
        {"an empty text", copies(u""), {{{{stringType, ""}}, {}}}, 102},
        {"an image only", copiesOnly(imageType, "pixels"), {{{{imageType, "pixels"}}, {}}}, 102},
        {"two items", copiesItems({rich, rich}), {{rich.data, {}}, {rich.data, {}}}, 102},
        {"nothing", ignores(), {{{{stringType, "before"}}, {}}}, 101},
        {"the selection", copiesSelectionOf(text), {{{{stringType, "brown fox"}}, {}}}, 102},
    };
    std::int64_t earlier = 0;
    for (const Case& each : cases) {
        desktop.userCopies(u"before");
        notes.onCopy(each.reaction);
        press(desktop, copyKey);
        EXPECT_EQ(desktop.pasteboardContents(), each.expected) << each.name;
        EXPECT_EQ(desktop.pasteboard().changeCount(), each.changeCount + earlier) << each.name;
        earlier += each.changeCount - 100;
    }
}

TEST_F(SimulatedReactions, CopiesTheSelectionOfTheMomentOfTheReaction) {
    notes.onCopy(copiesSelectionOf(text).after(milliseconds(40)));
    desktop.at(milliseconds(30), [this] { text.select({4, 5}); });
    press(desktop, copyKey);
    desktop.scheduling().sleep(milliseconds(50));
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"quick"));
    text.select({4, 0});
    press(desktop, copyKey);
    desktop.scheduling().sleep(milliseconds(50));
    EXPECT_EQ(desktop.pasteboard().changeCount(), 101);
}

TEST_F(SimulatedReactions, ReactsAtItsOwnTimeWhileThisProcessSleeps) {
    notes.onCopy(copies(u"copied").after(milliseconds(120)));
    press(desktop, copyKey);
    desktop.scheduling().sleep(milliseconds(120) - Duration(1));
    EXPECT_EQ(desktop.pasteboard().changeCount(), 100);
    desktop.scheduling().sleep(Duration(1));
    EXPECT_EQ(desktop.pasteboard().changeCount(), 101);
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"copied"));
}

TEST_F(SimulatedReactions, DelaysAddUp) {
    std::optional<Moment> reached;
    notes.onCopy(Reaction([&] { reached = desktop.now(); }).after(milliseconds(20)).after(milliseconds(5)));
    press(desktop, copyKey);
    desktop.scheduling().sleep(milliseconds(100));
    EXPECT_EQ(reached, milliseconds(25));
}

TEST_F(SimulatedReactions, ReactionsHappenInTurnAndTheLastOneRepeats) {
    notes.onCopyInTurn({ignores(), copies(u"second").after(milliseconds(10)), copies(u"third")});
    std::vector<std::optional<Text>> seen;
    for (int stroke = 0; stroke < 4; ++stroke) {
        press(desktop, copyKey);
        seen.push_back(desktop.pasteboard().string());
        desktop.scheduling().sleep(milliseconds(20));
        seen.push_back(desktop.pasteboard().string());
        desktop.userCopies(u"");
    }
    EXPECT_EQ(seen, (std::vector<std::optional<Text>>{std::nullopt, std::nullopt, u"", u"second", u"third", u"third",
                                                      u"third", u"third"}));
}

TEST_F(SimulatedReactions, PastesTheClipboardOverTheSelection) {
    notes.onPaste(pastesInto(text));
    desktop.userCopies(u"cat");
    press(desktop, pasteKey);
    EXPECT_EQ(text.text(), u"The quick cat");
    EXPECT_EQ(text.selection(), (TextRange{13, 0}));
    desktop.userCopiesItems({CopiedItem{{{imageType, "pixels"}}, {}}});
    press(desktop, pasteKey);
    EXPECT_EQ(text.text(), u"The quick cat");
}

TEST_F(SimulatedReactions, APasteWaitsForPromisedData) {
    notes.onPaste(pastesInto(text).after(milliseconds(30)));
    const auto provider = promiseText(desktop);
    press(desktop, pasteKey);
    desktop.scheduling().sleep(milliseconds(80));
    EXPECT_EQ(text.text(), u"The quick brown fox");
    EXPECT_EQ(provider->asked, 0);
    desktop.scheduling().runLoopSlice(Duration(0));
    EXPECT_EQ(text.text(), u"The quick promised");
    EXPECT_EQ(provider->asked, 1);
}

TEST_F(SimulatedReactions, APasteIsServedDuringASliceAtItsMoment) {
    notes.onPaste(pastesInto(text).after(milliseconds(30)));
    promiseText(desktop);
    press(desktop, pasteKey);
    std::vector<Text> seen;
    desktop.at(milliseconds(29), [&] { seen.push_back(text.text()); });
    desktop.at(milliseconds(31), [&] { seen.push_back(text.text()); });
    desktop.scheduling().runLoopSlice(milliseconds(100));
    EXPECT_EQ(seen, (std::vector<Text>{u"The quick brown fox", u"The quick promised"}));
}

TEST_F(SimulatedReactions, APasteGetsPromisedDataAfterTheEndOfTheProcess) {
    notes.onPaste(pastesInto(text).after(milliseconds(50)));
    const auto provider = promiseText(desktop);
    press(desktop, pasteKey);
    const Lines atTheEnd = desktop.journal();
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick promised");
    EXPECT_EQ(provider->asked, 1);
    EXPECT_EQ(desktop.now(), milliseconds(50));
    EXPECT_EQ(desktop.journal(), atTheEnd);
}

TEST_F(SimulatedReactions, AWaitingPasteGetsItsTextAtTheEndOfTheProcess) {
    notes.onPaste(pastesInto(text));
    promiseText(desktop);
    press(desktop, pasteKey);
    EXPECT_EQ(text.text(), u"The quick brown fox");
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick promised");
}

TEST_F(SimulatedReactions, AWaitingPasteWritesNothingIfTheContentsChange) {
    notes.onPaste(pastesInto(text));
    promiseText(desktop);
    press(desktop, pasteKey);
    desktop.userCopies(u"theirs");
    desktop.scheduling().runLoopSlice(milliseconds(20));
    EXPECT_EQ(text.text(), u"The quick brown fox");
}

TEST_F(SimulatedReactions, DeleteRemovesTheSelectionOrTheCharacterBefore) {
    struct Case {
        Text text;
        TextRange selection;
        Text expected;
        TextRange expectedSelection;
    };
    notes.onDelete(deletesSelectionOf(text));
    for (const Case& each : {Case{u"The fox", {4, 3}, u"The ", {4, 0}}, Case{u"The fox", {4, 0}, u"Thefox", {3, 0}},
                             Case{u"The fox", {0, 0}, u"The fox", {0, 0}}, Case{u"", {0, 0}, u"", {0, 0}},
                             Case{u"a\U0001f98a", {3, 0}, u"a", {1, 0}}}) {
        text.setText(each.text, each.selection);
        press(desktop, deleteKey);
        EXPECT_EQ(text.text(), each.expected) << testing::PrintToString(each.text) << each.selection.location;
        EXPECT_EQ(text.selection(), each.expectedSelection) << testing::PrintToString(each.text);
    }
}

TEST_F(SimulatedReactions, AnApplicationThatQuitDoesNotReact) {
    notes.onCopy(copies(u"too late").after(milliseconds(30)));
    press(desktop, copyKey);
    desktop.at(milliseconds(20), [this] { desktop.quit(812); });
    desktop.scheduling().sleep(milliseconds(50));
    EXPECT_EQ(desktop.pasteboard().changeCount(), 100);
}

TEST_F(SimulatedReactions, AnApplicationThatHangsDoesNotReactOrReply) {
    notes.onCopy(copies(u"too late").after(milliseconds(30))).onPaste(pastesInto(text)).onDelete(copies(u"never"));
    promiseText(desktop);
    press(desktop, copyKey);
    press(desktop, pasteKey);
    notes.hang();
    press(desktop, deleteKey);
    desktop.scheduling().runLoopSlice(milliseconds(50));
    EXPECT_EQ(text.text(), u"The quick brown fox");
    EXPECT_EQ(desktop.pasteboard().changeCount(), 101);

    Accessibility& accessibility = desktop.accessibility();
    const Element root = accessibility.applicationElement(812);
    const std::vector<std::string_view> names{attribute::value};
    const std::vector<Element> elements{text.element()};
    const AttributeAnswer unanswered{AXError::cannotComplete, NullValue{}};
    EXPECT_EQ(accessibility.copyAttribute(root, attribute::role), unanswered);
    EXPECT_EQ(accessibility.copyAttribute(text.element(), attribute::value), unanswered);
    EXPECT_EQ(accessibility.copyElementAttribute(root, attribute::menuBar).error, AXError::cannotComplete);
    EXPECT_EQ(accessibility.copyAttributes(elements, names), (std::vector<std::vector<AttributeAnswer>>{{unanswered}}));
    EXPECT_EQ(accessibility.setAttribute(text.element(), attribute::value, Text(u"x")), AXError::cannotComplete);
    EXPECT_EQ(accessibility.isAttributeSettable(text.element(), attribute::value),
              (SettableAnswer{AXError::cannotComplete, false}));
    EXPECT_EQ(accessibility.performAction(text.element(), action::press), AXError::cannotComplete);
    EXPECT_EQ(accessibility.processIdentifier(text.element()), 812);
}

TEST_F(SimulatedReactions, TheLastCopyWins) {
    notes.onCopy(copies(u"of the application").after(milliseconds(40)));
    desktop.at(milliseconds(20), [this] { desktop.userCopies(u"of the user"); });
    desktop.at(milliseconds(100), [this] { desktop.userCopies(u"of the user again"); });
    press(desktop, copyKey);
    std::vector<std::optional<Text>> seen;
    for (int slice = 0; slice < 4; ++slice) {
        desktop.scheduling().runLoopSlice(milliseconds(30));
        seen.push_back(desktop.pasteboard().string());
    }
    EXPECT_EQ(seen, (std::vector<std::optional<Text>>{u"of the user", u"of the application", u"of the application",
                                                      u"of the user again"}));
    EXPECT_EQ(desktop.pasteboard().changeCount(), 103);
}

TEST_F(SimulatedReactions, ALaterKeyStrokeReachesTheNewFrontApplication) {
    notes.onCopy(copies(u"notes"));
    mail.onCopy(copies(u"mail"));
    desktop.at(milliseconds(50), [this] { desktop.bringToFront(913); });
    press(desktop, copyKey);
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"notes"));
    desktop.scheduling().sleep(milliseconds(80));
    press(desktop, copyKey);
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"mail"));
}

TEST_F(SimulatedReactions, AnApplicationInTheBackgroundReactsAfterItsDelay) {
    notes.onCopy(copies(u"notes").after(milliseconds(30)));
    press(desktop, copyKey);
    desktop.at(milliseconds(10), [this] { desktop.bringToFront(913); });
    desktop.scheduling().sleep(milliseconds(40));
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"notes"));
}

TEST_F(SimulatedReactions, AKeyStrokeThatCannotBeCreatedHasNoEffect) {
    notes.onCopy(copies(u"copied"));
    desktop.failKeyStrokes();
    EXPECT_EQ(desktop.events().createKeyStroke(copyKey), nullptr);
    EXPECT_EQ(desktop.pasteboard().changeCount(), 100);
    press(desktop, copyKey);
    EXPECT_EQ(desktop.pasteboard().changeCount(), 101);
}

TEST_F(SimulatedReactions, AnActionReachesTheApplicationAfterItsLatency) {
    SimulatedElement item = notes.addElement();
    std::optional<Moment> reached;
    item.onAction(action::press, [&] { reached = desktop.now(); });
    desktop.setLatency(milliseconds(5));
    EXPECT_EQ(desktop.accessibility().performAction(item.element(), action::press), AXError::success);
    EXPECT_EQ(reached, milliseconds(5));
}

TEST_F(SimulatedReactions, ActionsReactInTurnAndTheLastScriptApplies) {
    SimulatedElement item = notes.addElement();
    const auto perform = [&] {
        const AXError error = desktop.accessibility().performAction(item.element(), action::press);
        return std::pair(error, desktop.pasteboard().string());
    };
    using Seen = std::pair<AXError, std::optional<Text>>;
    EXPECT_EQ(perform(), (Seen{AXError::actionUnsupported, std::nullopt}));
    item.onActionInTurn(action::press, {ignores(), copies(u"second")}, AXError::cannotComplete);
    EXPECT_EQ(perform(), (Seen{AXError::cannotComplete, std::nullopt}));
    EXPECT_EQ(perform(), (Seen{AXError::cannotComplete, u"second"}));
    item.answersAction(action::press, AXError::failure);
    desktop.userCopies(u"");
    EXPECT_EQ(perform(), (Seen{AXError::failure, u""}));
    item.onAction(action::press, copies(u"last"));
    EXPECT_EQ(perform(), (Seen{AXError::success, u"last"}));
}

TEST_F(SimulatedReactions, AreNotCallsAndNotInTheJournal) {
    notes.onCopyInTurn({copies(u"copied"), [this] { static_cast<void>(desktop.pasteboard().changeCount()); }});
    press(desktop, copyKey);
    press(desktop, copyKey);
    EXPECT_EQ(desktop.journal(), (Lines{
                                     "0.000000000 createKeyStroke(key 8, flags 0x100000) -> events",
                                     "0.000000000 postToSession(key 8, flags 0x100000)",
                                     "0.000000000 createKeyStroke(key 8, flags 0x100000) -> events",
                                     "0.000000000 postToSession(key 8, flags 0x100000)",
                                     "0.000000000 [user] changeCount() -> 101",
                                 }));
}

TEST(SimulatedUser, PerformsReactionsImmediatelyOrDelayed) {
    SimulatedDesktop desktop;
    desktop.perform(copies(u"now"));
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"now"));
    desktop.perform(copies(u"later").after(milliseconds(20)));
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"now"));
    desktop.scheduling().sleep(milliseconds(20));
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"later"));
}

TEST(SimulatedApplications, ReportTheFrontmostOne) {
    SimulatedDesktop desktop;
    EXPECT_EQ(desktop.front(), std::nullopt);
    desktop.addApplication(812, std::nullopt, std::nullopt);
    desktop.bringToFront(812);
    EXPECT_EQ(desktop.front(), 812);
    desktop.quit(812);
    EXPECT_EQ(desktop.front(), std::nullopt);
}

}  // namespace
}  // namespace lomaris::test
