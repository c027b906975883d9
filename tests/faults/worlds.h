#pragma once

#include "platform/simulated/simulated_desktop.h"
#include "tests/faults/happening.h"

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {

/// Who tells where the target's text is.
enum class Focus {
    /// The application, and the system as well.
    shown,
    /// Nobody, but the text stands in the tree of the focused window.
    inTheTree,
    /// The system alone.
    bySystemOnly,
    /// Nobody: the focused element is another one, which knows of no text.
    hidden,
};

/// Whether the selected text can be set, where accessibility shows it at all.
enum class Writing { direct, pasteOnly };

/// What the Copy item of the target's menu bar does, if there is one.
enum class CopyMenu { none, copies, doesNothing, isDisabled };

/// What Command+C does in the target.
enum class CopyKey { copies, copiesAfter40Milliseconds, doesNothing };

/// A desktop to be made: the user works on a document in one application, the target, and another one stands behind.
struct WorldPlan {
    /// Letters alone, as it becomes part of the name of a test.
    std::string name;
    Text bundleIdentifier = u"com.example.notes";
    Focus focus = Focus::shown;
    Writing writing = Writing::direct;
    CopyMenu copyMenu = CopyMenu::none;
    CopyKey copyKey = CopyKey::copies;
    Text replacement = u"red fox";
    /// Whether the replacement is a web address: where it is pasted, the selection must be deleted before.
    bool replacesByWebAddress = false;
    /// Whether a guarded replacement expects the range of the selection, as after a read by accessibility. Else it
    /// expects none, as after a read by keyboard.
    bool expectsRange = true;

    /// Whether the target is one of the applications that are read by keyboard even where accessibility shows the text.
    [[nodiscard]] bool isBrowser() const { return bundleIdentifier == u"com.google.Chrome"; }
};

/// How a failing test shows a plan: by its name.
inline void PrintTo(const WorldPlan& plan, std::ostream* stream) { *stream << plan.name; }

/// The desktops on which the sweeps run every command.
[[nodiscard]] const std::vector<WorldPlan>& worldPlans();

/// What a user may do at any time.
enum class UserAct {
    /// Types a letter over the selection.
    types,
    /// Clicks somewhere beside the text.
    clicks,
    /// Copies something elsewhere.
    copies,
    /// Selects other words of the document.
    selectsOtherWords,
    /// Selects the same words where they stand a second time in the document.
    selectsTheSameWordsElsewhere,
    /// Brings the other application to the front.
    switchesApplication,
    /// Quits the target.
    quitsTheTarget,
};

[[nodiscard]] const std::vector<UserAct>& userActs();
[[nodiscard]] std::string_view nameOf(UserAct act);

/// The counter that moves when the user does this; nothing where none does.
[[nodiscard]] std::optional<InputEventType> inputOf(UserAct act);

/// The document after the user did this in the target.
[[nodiscard]] Document after(UserAct act, Document document);
/// The document with this text in the place of what is selected, and the insertion point behind it.
[[nodiscard]] Document withSelectionReplaced(Document document, TextView text);
/// The document after the Delete key: without what is selected, or without the letter before the insertion point.
[[nodiscard]] Document withSelectionDeleted(Document document);

namespace world {
inline constexpr ProcessIdentifier target = 812;
inline constexpr ProcessIdentifier other = 900;
/// What the user copies in `UserAct::copies`.
inline constexpr TextView copiedMeanwhile = u"copied meanwhile";
}  // namespace world

/// A desktop as planned. What the target copies and what the user does is added to the list of happenings.
class FaultWorld {
public:
    /// `happenings` must outlive this.
    FaultWorld(const WorldPlan& plan, Happenings& happenings);

    void userDoes(UserAct act);
    /// Adds the document and the length of the journal to a happening.
    void observe(Happening& happening) const;

    /// The request that a caller makes of what stands selected at first.
    [[nodiscard]] std::string guardedRequest() const;

    [[nodiscard]] Document targetDocument() const { return {text_.text(), text_.selection()}; }
    [[nodiscard]] Document otherDocument() const { return {letter_.text(), letter_.selection()}; }

    SimulatedDesktop desktop;

private:
    void showText();
    void makeMenu();
    void copySelection();
    void note(Who who, std::string_view what);

    WorldPlan plan_;
    Happenings& happenings_;
    SimulatedApplication target_;
    SimulatedTextElement text_;
    SimulatedApplication other_;
    SimulatedTextElement letter_;
    SimulatedElement otherFocus_;
};

}  // namespace lomaris::test
