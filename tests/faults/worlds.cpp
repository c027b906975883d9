#include "tests/faults/worlds.h"

#include "accessibility/model/guarded_replacement_request_json.h"
#include "platform/attributes.h"
#include "tests/support/element_tree.h"

#include <chrono>
#include <optional>
#include <utility>

namespace lomaris::test {
namespace {

/// The user's document, which contains the selected words twice.
const Document essay{u"The quick brown fox met a brown fox", TextRange{10, 9}};
const Document letter{u"Dear reader", TextRange{5, 6}};

}  // namespace

const std::vector<WorldPlan>& worldPlans() {
    static const std::vector<WorldPlan> plans = {
        {.name = "Editor"},
        {.name = "EditorFoundInItsTree", .focus = Focus::inTheTree},
        {.name = "EditorKnownToTheSystem", .focus = Focus::bySystemOnly},
        {.name = "EditorWithoutRange", .expectsRange = false},
        {.name = "EditorForPastingOnly", .writing = Writing::pasteOnly},
        {.name = "Browser",
         .bundleIdentifier = u"com.google.Chrome",
         .copyMenu = CopyMenu::copies,
         .expectsRange = false},
        {.name = "BrowserWithoutMenu", .bundleIdentifier = u"com.google.Chrome", .expectsRange = false},
        {.name = "Terminal",
         .bundleIdentifier = u"com.apple.Terminal",
         .focus = Focus::hidden,
         .copyMenu = CopyMenu::copies,
         .copyKey = CopyKey::copiesAfter40Milliseconds,
         .expectsRange = false},
        {.name = "KeyOnly", .focus = Focus::hidden, .expectsRange = false},
        {.name = "DisabledMenu", .focus = Focus::hidden, .copyMenu = CopyMenu::isDisabled, .expectsRange = false},
        {.name = "WebAddress",
         .focus = Focus::hidden,
         .replacement = u"https://example.org",
         .replacesByWebAddress = true,
         .expectsRange = false},
        {.name = "WebAddressIntoAnEditor",
         .writing = Writing::pasteOnly,
         .replacement = u"www.example.org",
         .replacesByWebAddress = true},
        {.name = "NothingCopies",
         .focus = Focus::hidden,
         .copyMenu = CopyMenu::doesNothing,
         .copyKey = CopyKey::doesNothing,
         .expectsRange = false},
    };
    return plans;
}

const std::vector<UserAct>& userActs() {
    static const std::vector<UserAct> acts = {
        UserAct::types,
        UserAct::clicks,
        UserAct::copies,
        UserAct::selectsOtherWords,
        UserAct::selectsTheSameWordsElsewhere,
        UserAct::switchesApplication,
        UserAct::quitsTheTarget,
    };
    return acts;
}

std::string_view nameOf(UserAct act) {
    switch (act) {
        case UserAct::types:
            return "types";
        case UserAct::clicks:
            return "clicks";
        case UserAct::copies:
            return "copies";
        case UserAct::selectsOtherWords:
            return "selects other words";
        case UserAct::selectsTheSameWordsElsewhere:
            return "selects the same words elsewhere";
        case UserAct::switchesApplication:
            return "switches to another application";
        case UserAct::quitsTheTarget:
            return "quits the target";
    }
    return "";
}

std::optional<InputEventType> inputOf(UserAct act) {
    switch (act) {
        case UserAct::types:
        case UserAct::quitsTheTarget:
            return InputEventType::keyDown;
        case UserAct::clicks:
        case UserAct::selectsOtherWords:
        case UserAct::selectsTheSameWordsElsewhere:
        case UserAct::switchesApplication:
            return InputEventType::leftMouseDown;
        case UserAct::copies:
            break;
    }
    return std::nullopt;
}

Document after(UserAct act, Document document) {
    if (act == UserAct::types) {
        return withSelectionReplaced(std::move(document), u"x");
    }
    if (act == UserAct::selectsOtherWords) {
        document.selection = {4, 5};
    }
    if (act == UserAct::selectsTheSameWordsElsewhere) {
        const TextView words = u"brown fox";
        document.selection = {static_cast<std::int64_t>(document.text.rfind(words)),
                              static_cast<std::int64_t>(words.size())};
    }
    return document;
}

Document withSelectionReplaced(Document document, TextView text) {
    document.text.replace(static_cast<std::size_t>(document.selection.location),
                          static_cast<std::size_t>(document.selection.length), text);
    document.selection = {document.selection.location + static_cast<std::int64_t>(text.size()), 0};
    return document;
}

Document withSelectionDeleted(Document document) {
    if (document.selection.length == 0 && document.selection.location > 0) {
        document.selection = {document.selection.location - 1, 1};
    }
    return withSelectionReplaced(std::move(document), u"");
}

FaultWorld::FaultWorld(const WorldPlan& plan, Happenings& happenings)
    : plan_(plan),
      happenings_(happenings),
      target_(desktop.addApplication(world::target, plan.bundleIdentifier, u"Target")),
      text_(target_.addTextElement(essay.text, essay.selection)),
      other_(desktop.addApplication(world::other, u"com.example.mail", u"Mail")),
      letter_(other_.addTextElement(letter.text, letter.selection)),
      otherFocus_(other_.addElement()) {
    desktop.bringToFront(world::target);
    desktop.setInputCounters({1, 2, 3, 4});
    desktop.userCopiesItems(
        {{.data = {{"public.utf8-plain-text", "mine"}, {"public.html", "<b>mine</b>"}}, .promises = {}},
         {.data = {{"public.png", "pixels"}}, .promises = {}}});
    showText();
    makeMenu();
    if (plan.copyKey != CopyKey::doesNothing) {
        const auto delay = std::chrono::milliseconds(plan.copyKey == CopyKey::copiesAfter40Milliseconds ? 40 : 0);
        target_.onCopy(Reaction([this] { copySelection(); }).after(delay));
    }
    target_.onPaste(pastesInto(text_)).onDelete(deletesSelectionOf(text_));
    // The other application exposes no text, so it is never the target, but it accepts any key that reaches it.
    other_.element().answers(attribute::focusedUIElement, otherFocus_.element());
    other_.onPaste(pastesInto(letter_)).onDelete(deletesSelectionOf(letter_));
}

void FaultWorld::userDoes(UserAct act) {
    note(Who::user, nameOf(act));
    const auto input = inputOf(act);
    if (input == InputEventType::keyDown) {
        desktop.userTypes();
    } else if (input) {
        desktop.userClicks(*input);
    }
    switch (act) {
        case UserAct::copies:
            desktop.userCopies(world::copiedMeanwhile);
            return;
        case UserAct::switchesApplication:
            desktop.bringToFront(world::other);
            desktop.systemWide().answers(attribute::focusedUIElement, otherFocus_.element());
            return;
        case UserAct::quitsTheTarget:
            desktop.quit(world::target);
            desktop.systemWide().answers(attribute::focusedUIElement, AXError::noValue);
            return;
        case UserAct::types:
        case UserAct::clicks:
        case UserAct::selectsOtherWords:
        case UserAct::selectsTheSameWordsElsewhere:
            break;
    }
    Document document = after(act, targetDocument());
    text_.setText(std::move(document.text), document.selection);
}

void FaultWorld::observe(Happening& happening) const {
    happening.document = targetDocument();
    happening.journalLines = desktop.journal().size();
}

std::string FaultWorld::guardedRequest() const {
    const GuardedReplacementRequest request{
        .expectedText = essay.selectedText(),
        .expectedProcessIdentifier = world::target,
        .expectedBundleIdentifier = plan_.bundleIdentifier,
        .expectedSelectedRange = plan_.expectsRange ? std::optional(essay.selection) : std::nullopt,
        .expectedInputActivity = {1, 2, 3, 4},
        .replacementText = plan_.replacement};
    return encodeJson(request, SlashEscaping::unescaped);
}

void FaultWorld::showText() {
    SimulatedElement window = target_.addElement();
    window.answersAction(action::raise, AXError::success)
        .answersSet(attribute::main, AXError::success)
        .answersSet(attribute::focused, AXError::success);
    setChildren(window, {});
    target_.element().answers(attribute::focusedWindow, window.element());
    if (plan_.writing == Writing::pasteOnly) {
        text_.answersSettable(attribute::selectedText, {AXError::success, false});
    }
    switch (plan_.focus) {
        case Focus::shown:
            target_.element().answers(attribute::focusedUIElement, text_.element());
            desktop.systemWide().answers(attribute::focusedUIElement, text_.element());
            setChildren(window, {text_});
            break;
        case Focus::inTheTree:
            setChildren(window, {target_.addElement(), text_});
            break;
        case Focus::bySystemOnly:
            desktop.systemWide().answers(attribute::focusedUIElement, text_.element());
            break;
        case Focus::hidden:
            target_.element().answers(attribute::focusedUIElement, target_.addElement().element());
            break;
    }
}

void FaultWorld::makeMenu() {
    if (plan_.copyMenu == CopyMenu::none) {
        return;
    }
    const bool isEnabled = plan_.copyMenu != CopyMenu::isDisabled;
    auto menuBar = target_.addMenuBar(
        {{u"File", {{u"Close", u"w"}}},
         {u"Edit", {{u"Cut", u"x"}, {.title = u"Copy", .commandCharacter = u"c", .enabled = isEnabled}}}});
    if (plan_.copyMenu == CopyMenu::copies) {
        menuBar.item(u"Edit", u"Copy").onAction(action::press, [this] { copySelection(); });
    }
}

void FaultWorld::copySelection() {
    const Text selected = targetDocument().selectedText();
    if (selected.empty()) {
        return;
    }
    note(Who::target, "copies");
    desktop.userCopies(selected);
}

void FaultWorld::note(Who who, std::string_view what) {
    Happening happening{.who = who, .what = std::string(what)};
    observe(happening);
    happenings_.push_back(std::move(happening));
}

}  // namespace lomaris::test
