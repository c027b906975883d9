#pragma once

#include "platform/simulated/simulated_desktop.h"
#include "tests/faults/happening.h"

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {

/// How accessibility reports the target's text area.
enum class Focus {
    /// The application and the system-wide element report it as the focused element.
    shown,
    /// It is not reported as the focused element, but it is in the tree of the focused window.
    inTheTree,
    /// Only the system-wide element reports it as the focused element.
    bySystemOnly,
    /// Another element, without text, is reported as the focused element.
    hidden,
};

/// Whether the selected text can be set, if accessibility exposes it.
enum class Writing { direct, pasteOnly };

/// The effect of the Copy item of the target's menu bar, if there is one.
enum class CopyMenu { none, copies, doesNothing, isDisabled };

/// The effect of Command+C in the target.
enum class CopyKey { copies, copiesAfter40Milliseconds, doesNothing };

/// The plan of a desktop: the user works on a document in one application, the target, and another application is
/// behind it.
struct WorldPlan {
    /// Letters only, because it is part of the name of a test.
    std::string name;
    Text bundleIdentifier = u"com.example.notes";
    Focus focus = Focus::shown;
    Writing writing = Writing::direct;
    CopyMenu copyMenu = CopyMenu::none;
    CopyKey copyKey = CopyKey::copies;
    Text replacement = u"red fox";
    /// Whether the replacement is a web address, before which the selection must be deleted.
    bool replacesByWebAddress = false;
    /// Whether a guarded replacement expects the range of the selection, as after a read by accessibility; otherwise it
    /// expects none, as after a read by copying.
    bool expectsRange = true;

    /// Whether the target is an application that is read by copying even if accessibility exposes the text.
    [[nodiscard]] bool isBrowser() const { return bundleIdentifier == u"com.google.Chrome"; }
};

/// Prints the name of a plan if an assertion fails.
inline void PrintTo(const WorldPlan& plan, std::ostream* stream) { *stream << plan.name; }

/// The desktops on which the sweeps run every command.
[[nodiscard]] const std::vector<WorldPlan>& worldPlans();

/// Actions that the user may perform at any time.
enum class UserAct {
    /// Types a letter over the selection.
    types,
    /// Clicks beside the text.
    clicks,
    /// Copies a text in another program.
    copies,
    /// Selects other words of the document.
    selectsOtherWords,
    /// Selects the second occurrence of the same words in the document.
    selectsTheSameWordsElsewhere,
    /// Brings the other application to the front.
    switchesApplication,
    /// Quits the target.
    quitsTheTarget,
};

[[nodiscard]] const std::vector<UserAct>& userActs();
[[nodiscard]] std::string_view nameOf(UserAct act);

/// The counter that counts this action; nullopt if none does.
[[nodiscard]] std::optional<InputEventType> inputOf(UserAct act);

/// The document after this action in the target.
[[nodiscard]] Document after(UserAct act, Document document);
/// The document with the selection replaced by this text, and the insertion point after it.
[[nodiscard]] Document withSelectionReplaced(Document document, TextView text);
/// The document after the Delete key: without the selection or, if that is empty, without the letter before the
/// insertion point.
[[nodiscard]] Document withSelectionDeleted(Document document);

namespace world {
inline constexpr ProcessIdentifier target = 812;
inline constexpr ProcessIdentifier other = 900;
/// The text that `UserAct::copies` copies.
inline constexpr TextView copiedMeanwhile = u"copied meanwhile";
}  // namespace world

/// A desktop made by a plan. Copies by the target and actions of the user are added to `happenings`.
class FaultWorld {
public:
    /// `happenings` must outlive this object.
    FaultWorld(const WorldPlan& plan, Happenings& happenings);

    void userDoes(UserAct act);
    /// Adds the target's document and the length of the journal to a happening.
    void observe(Happening& happening) const;

    /// The request for a guarded replacement of what was selected at first.
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
