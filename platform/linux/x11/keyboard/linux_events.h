#pragma once

#include "platform/event_services.h"
#include "platform/linux/x11/keyboard/key_choice.h"
#include "platform/linux/x11/keyboard/key_poster.h"
#include "platform/linux/x11/x11_connection.h"
#include "platform/linux/x11/x11_input_clock.h"

#include <memory>
#include <utility>

namespace lomaris {

/// The event services of an X11 session: key strokes and input counters.
///
/// This folder chooses the keys for a stroke (`key_choice.h`), finds them in the keymap (`x11_keyboard_map.h`), plans
/// the press (`key_press_plan.h`) and posts it with XTEST (`key_poster.h`). `native_platform.cpp` is its only user. It
/// may use `x11/` and `applications/`; that a terminal has the focus is passed in as a query, as it needs AT-SPI.
///
/// Creating a stroke: only Copy, Paste and Delete, with exactly their flags, can be created. The keys for a stroke are
/// those of the window that will receive them (`applications::EditingKeys`): Control instead of Command in an ordinary
/// application, other keys or none in a terminal. A stroke cannot be created if the window with the input focus has no
/// keys for it, or if a key is missing from the keymap or needs a modifier in it. X11 has no permission for posting
/// events: every client of the display may post them.
///
/// Posting to the session: the receiver is determined again before the press, and once more while the server is
/// grabbed, when no other program can move the focus. Nothing is pressed if other keys are right for it by then. (That
/// a terminal has the focus inside the same window is not determined again.) The key has exactly the modifiers of the
/// stroke, except Num Lock: held modifiers are released for the press, locked ones are unlocked, and another group is
/// locked if the key is only there. All this is one batch of requests, which the server receives completely or not at
/// all. Afterwards the user's devices are queried, and the modifiers that they still hold are pressed again, on the
/// same device. If the user releases a key between this query and the press, it stays down until it is pressed once
/// more. If the server does not support XInput 2, held modifiers are not restored: the user has to press them again.
///
/// Posting to a process: the events are sent (SendEvent) to its window with the input focus, otherwise to its newest
/// window, with the keys of that window; nothing is sent if there are none. The focus does not change. Many programs
/// ignore such events. Held modifiers do not affect them.
///
/// Counters: X11 has no counters of events, but a time of the last input (`X11InputClock`), which serves as the counter
/// of every type. Two readings are equal exactly if there was no input between them. Pointer motion and keys posted to
/// the session count as input too, keys posted to a process do not. A guard that compares counters may therefore refuse
/// although the user has neither typed nor clicked, but never the reverse.
///
/// Main thread only.
class LinuxEvents final : public EventServices {
public:
    /// `connection`, and everything that the query uses, must outlive the services.
    LinuxEvents(X11Connection& connection, TerminalQuery isTerminalFocused)
        : connection_(connection),
          isTerminalFocused_(std::move(isTerminalFocused)),
          inputClock_(connection),
          poster_(connection) {}

    [[nodiscard]] bool preflightPostEventAccess() override;
    [[nodiscard]] bool requestPostEventAccess() override;
    [[nodiscard]] std::unique_ptr<KeyStrokeEvents> createKeyStroke(KeyStroke keyStroke) override;
    void postToSession(const KeyStrokeEvents& events) override;
    void postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) override;
    [[nodiscard]] std::uint32_t inputCounter(InputEventType type) override;

private:
    X11Connection& connection_;
    TerminalQuery isTerminalFocused_;
    X11InputClock inputClock_;
    KeyPoster poster_;
};

}  // namespace lomaris
