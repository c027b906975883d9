#pragma once

#include "platform/platform.h"
#include "platform/simulated/reaction.h"
#include "platform/simulated/simulated_application.h"
#include "platform/simulated/simulated_element.h"
#include "platform/simulated/simulated_menu_bar.h"
#include "platform/simulated/simulated_pasteboard_item.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris {

/// The four input counters of the session.
struct InputCounters {
    std::uint32_t keyDown = 0;
    std::uint32_t leftMouseDown = 0;
    std::uint32_t rightMouseDown = 0;
    std::uint32_t otherMouseDown = 0;

    friend bool operator==(const InputCounters&, const InputCounters&) = default;
};

/// A key stroke that was posted: to the session, or to a process where one is given.
struct PostedKeyStroke {
    KeyStroke keyStroke;
    std::optional<ProcessIdentifier> processIdentifier;
    Moment moment{0};

    friend bool operator==(const PostedKeyStroke&, const PostedKeyStroke&) = default;
};

/// What the main thread throws when `terminate` or `kill` ends the process. Not a `std::exception`, so that no handler
/// of the logic takes it for a failure.
struct SimulatedTermination {
    int signal = 0;
};

/// A desktop in memory, with virtual time and a journal of every boundary call, for tests and benchmarks.
///
/// It starts empty, at moment zero: the process is trusted and may post events, no application runs, the pasteboard has
/// no items, the input counters are zero. The functions below are its script: what stands on the desktop and what the
/// user does. They are not journalled.
///
/// Time is virtual. It stands still while anything runs and moves only when everybody waits: then it jumps to the next
/// moment at which someone wakes or the user acts. Background blocks run on real threads, but exactly one thread runs
/// at any time; threads take their turns in the order in which they became ready. At one moment the user acts first,
/// then the threads wake in the order in which they began to wait. The same scenario therefore gives the same journal.
/// A wait that nothing can end aborts the process with a message.
///
/// The desktop is used by the thread that made it (its main thread), by its background blocks, and by the actions that
/// it was given; by nobody else.
///
/// When the desktop ends, what this process still promises on the pasteboard is resolved first. Then background blocks
/// that have begun are finished, time jumping from one of their deadlines to the next; blocks that have not begun, the
/// main queue and actions of the user that are still to come are dropped.
class SimulatedDesktop final : public Platform {
public:
    SimulatedDesktop();
    ~SimulatedDesktop() override;

    Accessibility& accessibility() override;
    Pasteboard& pasteboard() override;
    EventServices& events() override;
    Workspace& workspace() override;
    Scheduling& scheduling() override;

    // Permissions.

    /// What the trust check answers, with and without the prompt.
    void setTrusted(bool trusted);
    /// What the trust check with the prompt answers, if not the same.
    void setPromptAnswer(bool trusted);
    /// Whether this process may post events.
    void setPostEventAccess(bool granted);
    /// What a request to post events answers where it is not granted already; a yes grants it. No by default.
    void setPostEventRequestAnswer(bool granted);

    // The user's locale.

    /// Its language as an ISO 639-1 code ("tr"), which decides which letters are equal regardless of case. None by
    /// default.
    void setLanguage(std::string_view language);

    // Applications.

    /// Starts an application, not in front. The process identifier must not be that of a running application.
    SimulatedApplication addApplication(ProcessIdentifier processIdentifier, std::optional<Text> bundleIdentifier,
                                        std::optional<Text> localizedName);
    void bringToFront(ProcessIdentifier processIdentifier);
    void leaveNothingInFront();
    /// The application in front, or nothing where none is.
    [[nodiscard]] std::optional<ProcessIdentifier> front() const;
    /// Ends an application: every operation on its elements answers `invalidUIElement` from now on, and nothing is in
    /// front if it was.
    void quit(ProcessIdentifier processIdentifier);
    /// The script of the system-wide element.
    [[nodiscard]] SimulatedElement systemWide();

    // The user and other programs.

    void setInputCounters(InputCounters counters);
    [[nodiscard]] InputCounters inputCounters() const;
    /// The user presses a key: counts one key down. Nothing else happens.
    void userTypes();
    /// The user clicks: counts one press of that mouse button. Nothing else happens.
    void userClicks(InputEventType button = InputEventType::leftMouseDown);

    /// Another program clears the pasteboard and writes one item with this plain text. In the reaction of an
    /// application that program is the application.
    void userCopies(TextView text);
    /// The same with these items.
    void userCopiesItems(const std::vector<CopiedItem>& items);
    /// Another program asks for the bytes of the first item that has `type`. `whenRead` gets them: at once where they
    /// are there, nobody has them or another program promised them; when this process has kept its promise, which it
    /// does in a run-loop slice or at the end of the desktop; with nothing when the contents go away before that. What
    /// it holds must live until then.
    void readPasteboardAsAnotherProgram(const PasteboardType& type, std::function<void(std::optional<Bytes>)> whenRead);
    /// The pasteboard refuses the next `count` writes.
    void refusePasteboardWrites(int count = 1);
    /// The pasteboard refuses the `number`-th write of this process since the beginning, the first being 1.
    void refusePasteboardWriteNumber(int number);
    /// Another process takes exclusive use of the pasteboard until `moment`, or for good with `Moment::max()`. False if
    /// it is in use already; nothing changes then. To try for the current moment only finds out whether it is in use.
    /// `Pasteboard::tryHold` in an action is a try of another process as well.
    [[nodiscard]] bool holdPasteboardUntil(Moment moment);
    /// The platform has a keeper of the pasteboard, as described at `PasteboardHold`, from the first hold of this
    /// process on. While the process runs, its run loop keeps its promises, as without a keeper. None by default.
    void addKeeper();
    [[nodiscard]] std::vector<StandingItem> pasteboardContents() const;
    /// The plain text that another program finds now, or nothing where there is none. This process keeps its promise
    /// for it on the spot, whether or not its run loop turns, or gives nothing once it has ended. Not for actions.
    [[nodiscard]] std::optional<Text> pasteboardStringForOthers();

    // Key strokes.

    /// The creation of the next `count` key strokes fails.
    void failKeyStrokes(int count = 1);
    /// Key strokes so far, in their order. One that goes to the session counts as a key down.
    [[nodiscard]] const std::vector<PostedKeyStroke>& postedKeyStrokes() const;

    // Time and journal.

    /// Virtual time that every accessibility call takes that crosses into an application (copies, sets, settable
    /// questions, actions; a batch is one call). It passes before the application answers. Zero by default.
    void setLatency(Duration latency);
    /// The same for one call, of any service but scheduling, by its name in the journal ("copyAttribute", "string"). It
    /// takes the place of the other for this call.
    void setLatencyOf(std::string_view call, Duration latency);

    /// `action` runs at `moment`, on any thread of the desktop; where that moment is not ahead, just before the next
    /// boundary call or wait. It must not wait or sleep. What it holds must live until it ran or the desktop ends.
    void at(Moment moment, std::function<void()> action);

    /// The user or another program does now, or later where the reaction has a delay, what an application would do.
    void perform(const Reaction& reaction);

    /// `action` runs just before the `number`-th boundary call since the beginning, the first being 1. It must not wait
    /// or sleep. Calls made by actions count and are journalled as any other, marked as the user's.
    void beforeCall(std::size_t number, std::function<void()> action);

    [[nodiscard]] Moment now() const;

    // The end of this process.

    /// Something tells this process to end, a signal of this number for example; the first one counts. Meant for
    /// actions.
    ///
    /// Before the first termination guard the process ends at once: in the wait or the call that the main thread is in,
    /// or just before its next boundary call. (Only a wait for a lock or a condition is left to end by itself first.)
    /// From then on it ends in the wait that the main thread is in, in the next one as soon as it begins, when a guard
    /// goes, or with `endProcess`; not while a guard holds it off.
    ///
    /// To end is: the clean-up of the newest guard runs, its calls journalled as any others; what this process promised
    /// on the pasteboard is resolved; then `SimulatedTermination` comes out of the wait or call. It comes out of the
    /// next call instead where a guard that went ended the process or where another exception is on its way, because
    /// a second one could not leave a destructor. From the end on calls do nothing, answer a failure or nothing, and
    /// are not journalled; only waits still take their time, so that nobody turns in circles before a deadline.
    ///
    /// Further requests count for nothing. Only if the desktop has a keeper and a guard has existed, a second request
    /// before the end kills the process, unless a guard holds the end off.
    void terminate(int signalNumber);
    /// Kills this process: no clean-up runs, promises are not resolved, and guards do not matter. Programs that wait
    /// for promised text get it from the keeper, if there is one, otherwise nothing. Meant for actions.
    ///
    /// `SimulatedTermination` comes out of the call or wait that the main thread is in, or out of its next one. Writes
    /// to the pasteboard only do nothing, because destructors make them. Everything else is as after `terminate`.
    void kill(int signalNumber = 9);
    /// Whether this process may write to its standard output: not any more once it was told to end. Where that ends it
    /// at its next call, or has ended it, this throws `SimulatedTermination` as the call would.
    [[nodiscard]] bool admitsOutput();
    /// The number that ended this process, or nothing where none did.
    [[nodiscard]] std::optional<int> endedBySignal() const;

    /// This process ends by itself, unless it has ended already: what it promised on the pasteboard is resolved,
    /// background blocks that have begun are finished, the others and the main queue are dropped, and calls do nothing
    /// from then on. Then the user and the applications go on until nothing more is to come from them, so that the test
    /// sees what a paste that was handled a moment after the end has written. Main thread; not for actions.
    void endProcess();

    /// One line for each boundary call so far, in the order of the calls: the virtual time of the call in seconds, the
    /// call, its arguments and its answer, which is missing while the call still lasts. Calls of background blocks name
    /// their block. Readings of the clock and takings and releasings of a lock are no calls.
    ///
    ///     0.000000000 copyAttribute(812/1, AXSelectedText) -> "brown fox"
    ///     0.100000000 [background 1] broadcast(condition 1)
    ///     0.250000000 [user] clearContents()
    [[nodiscard]] const std::vector<std::string>& journal() const;

private:
    std::unique_ptr<simulated::World> world_;
};

}  // namespace lomaris
