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

/// A key stroke that was posted to a process or, without a process identifier, to the session.
struct PostedKeyStroke {
    KeyStroke keyStroke;
    std::optional<ProcessIdentifier> processIdentifier;
    Moment moment{0};

    friend bool operator==(const PostedKeyStroke&, const PostedKeyStroke&) = default;
};

/// Thrown on the main thread when `terminate` or `kill` ends the process. Not a `std::exception`, so that no handler of
/// the tool mistakes it for a failure.
struct SimulatedTermination {
    int signal = 0;
};

/// A desktop in memory, with virtual time and a journal of every boundary call, for tests and benchmarks.
///
/// It starts empty, at moment zero: the process is trusted and may post events, no application runs, the pasteboard has
/// no items, and the input counters are zero. The functions below are its script: they set up the desktop and perform
/// what the user does. They are not recorded in the journal.
///
/// Time is virtual. It advances only while all threads wait, and then moves to the next moment at which a thread wakes
/// or the user acts. Background blocks run on real threads, but only one thread runs at any time, in the order in which
/// the threads became ready. At the same moment the user acts first, then the threads wake in the order in which they
/// began to wait. Therefore the same scenario always produces the same journal. If all threads wait for something that
/// cannot happen, the desktop aborts with a message.
///
/// Only the thread that created the desktop (its main thread), its background blocks and the actions that were given to
/// it may use it.
///
/// On destruction the desktop first resolves what this process still promises on the pasteboard. It then runs the
/// background blocks that have begun to their end, with time moving from one deadline to the next. Blocks that have not
/// begun, the main queue and the remaining actions of the user are dropped.
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

    /// Sets the result of the trust check, with and without the prompt.
    void setTrusted(bool trusted);
    /// Sets the result of the trust check with the prompt, if it differs.
    void setPromptAnswer(bool trusted);
    /// Sets whether this process may post events.
    void setPostEventAccess(bool granted);
    /// Sets the result of a request to post events while the permission is missing; true also grants it. False by
    /// default.
    void setPostEventRequestAnswer(bool granted);

    // The user's locale.

    /// Sets the language, which determines how case is ignored, as an ISO 639-1 code ("tr"). None by default.
    void setLanguage(std::string_view language);

    // Applications.

    /// Starts an application without bringing it to the front. No running application may have the same process
    /// identifier.
    SimulatedApplication addApplication(ProcessIdentifier processIdentifier, std::optional<Text> bundleIdentifier,
                                        std::optional<Text> localizedName);
    void bringToFront(ProcessIdentifier processIdentifier);
    void leaveNothingInFront();
    /// The frontmost application; nullopt if there is none.
    [[nodiscard]] std::optional<ProcessIdentifier> front() const;
    /// Ends an application. From now on every operation on its elements returns `invalidUIElement`. If it was
    /// frontmost, no application is afterwards.
    void quit(ProcessIdentifier processIdentifier);
    /// The script of the system-wide element.
    [[nodiscard]] SimulatedElement systemWide();

    // The user and other programs.

    void setInputCounters(InputCounters counters);
    [[nodiscard]] InputCounters inputCounters() const;
    /// The user presses a key: counts one key-down and has no other effect.
    void userTypes();
    /// The user clicks: counts one press of that mouse button and has no other effect.
    void userClicks(InputEventType button = InputEventType::leftMouseDown);

    /// Another program clears the pasteboard and writes one item with this plain text. In the reaction of an
    /// application, that program is the application.
    void userCopies(TextView text);
    /// Like `userCopies`, with these items.
    void userCopiesItems(const std::vector<CopiedItem>& items);
    /// Another program requests the bytes of the first item that has `type`, and `whenRead` is called with them: at
    /// once unless this process promised them, otherwise when this process fulfils the promise, in a run-loop slice or
    /// when it ends. It is called with nullopt if there are no such bytes or the contents change first. Everything that
    /// `whenRead` references must exist until then.
    void readPasteboardAsAnotherProgram(const PasteboardType& type, std::function<void(std::optional<Bytes>)> whenRead);
    /// The pasteboard refuses the next `count` writes.
    void refusePasteboardWrites(int count = 1);
    /// The pasteboard refuses the `number`-th write of this process, counted from 1.
    void refusePasteboardWriteNumber(int number);
    /// Another process holds the pasteboard until `moment`, or for good with `Moment::max()`. Returns false and changes
    /// nothing if the pasteboard is in use; call it with the current moment just to find that out.
    /// `Pasteboard::tryHold` in an action also acts for another process.
    [[nodiscard]] bool holdPasteboardUntil(Moment moment);
    /// Adds a keeper of the pasteboard, as described at `PasteboardHold`, which serves from the first hold of this
    /// process on. While the process runs, its run loop fulfils its promises, as without a keeper. None by default.
    void addKeeper();
    [[nodiscard]] std::vector<StandingItem> pasteboardContents() const;
    /// The plain text that another program reads now; nullopt if there is none. This process fulfils its promise at
    /// once, even outside a run-loop slice; once it has ended, the promise has no data. Must not be called in actions.
    [[nodiscard]] std::optional<Text> pasteboardStringForOthers();

    // Key strokes.

    /// The creation of the next `count` key strokes fails.
    void failKeyStrokes(int count = 1);
    /// All key strokes posted so far, in order. One that is posted to the session counts as a key-down.
    [[nodiscard]] const std::vector<PostedKeyStroke>& postedKeyStrokes() const;

    // Time and journal.

    /// Sets the virtual time that each accessibility call takes if it sends a request to an application (copying or
    /// setting an attribute, `isAttributeSettable`, performing an action; a batch is one call). It passes before the
    /// application replies. Zero by default.
    void setLatency(Duration latency);
    /// Sets the virtual time of one call, by its name in the journal ("copyAttribute", "string"); overrides
    /// `setLatency` for this call. Not for calls of the scheduling service.
    void setLatencyOf(std::string_view call, Duration latency);

    /// Runs `action` at `moment`, on any thread of the desktop; if that moment is not in the future, just before the
    /// next boundary call or wait. The action must not wait or sleep. Everything it references must exist until it has
    /// run or the desktop is destroyed.
    void at(Moment moment, std::function<void()> action);

    /// The user or another program performs a reaction, after its delays.
    void perform(const Reaction& reaction);

    /// Runs `action` just before the `number`-th boundary call, counted from 1. It must not wait or sleep. Boundary
    /// calls made by actions count and are recorded like any other, marked as the user's.
    void beforeCall(std::size_t number, std::function<void()> action);

    [[nodiscard]] Moment now() const;

    // The end of this process.

    /// Requests the end of this process, for example by a signal of this number. Only the first request counts, except
    /// as described below. Meant for actions.
    ///
    /// Without any termination guard so far, the process ends at once: in the current wait or call of the main thread,
    /// or just before its next boundary call. (A wait for a lock or a condition returns normally first.) After the
    /// first guard was created, it ends in the current or next wait of the main thread, when a guard is destroyed, or
    /// in `endProcess`, but not while a guard holds termination off.
    ///
    /// The process ends in three steps: the clean-up of the newest guard runs, and its calls are recorded like any
    /// other; what this process promised on the pasteboard is resolved; `SimulatedTermination` is thrown from the wait
    /// or call. It is thrown from the next call instead if the destructor of a guard ended the process or another
    /// exception is in flight. After the end, calls do nothing, return a failure or an empty result, and are not
    /// recorded; only waits still take their time, so that a loop that waits for a deadline ends.
    ///
    /// If the desktop has a keeper and a guard was created, a second request before the end kills the process, unless a
    /// guard holds termination off.
    void terminate(int signalNumber);
    /// Kills this process: no clean-up runs, promises are not resolved, and guards have no effect. Programs that wait
    /// for promised text get it from the keeper; without a keeper they get nothing. Meant for actions.
    ///
    /// `SimulatedTermination` is thrown from the current call or wait of the main thread, or from the next one. It is
    /// never thrown from `clearContents` or `writeItems`, because destructors call them; they do nothing instead. After
    /// that, calls and waits behave as after `terminate`.
    void kill(int signalNumber = 9);
    /// Whether this process may write to its standard output: false once its end was requested. Throws
    /// `SimulatedTermination` like a boundary call.
    [[nodiscard]] bool admitsOutput();
    /// The signal number that ended this process; nullopt if none did.
    [[nodiscard]] std::optional<int> endedBySignal() const;

    /// Ends this process normally, unless it has ended already: what it promised on the pasteboard is resolved,
    /// background blocks that have begun run to their end, other blocks and the main queue are dropped, and calls do
    /// nothing from then on. Then all remaining actions of the user and the applications run, so that the test sees,
    /// for example, the text of a paste that is handled after the end. Main thread only; must not be called in actions.
    void endProcess();

    /// One line for each boundary call so far, in order: the virtual time of the call in seconds, the call, its
    /// arguments and its result, which is missing until the call returns. Calls of background blocks name their block.
    /// Reading the clock and locking or unlocking a condition are not recorded.
    ///
    ///     0.000000000 copyAttribute(812/1, AXSelectedText) -> "brown fox"
    ///     0.100000000 [background 1] broadcast(condition 1)
    ///     0.250000000 [user] clearContents()
    [[nodiscard]] const std::vector<std::string>& journal() const;

private:
    std::unique_ptr<simulated::World> world_;
};

}  // namespace lomaris
