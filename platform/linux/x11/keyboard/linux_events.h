#pragma once

#include "platform/event_services.h"
#include "platform/linux/x11/keyboard/key_choice.h"
#include "platform/linux/x11/keyboard/key_poster.h"
#include "platform/linux/x11/x11_connection.h"
#include "platform/linux/x11/x11_input_clock.h"

#include <memory>
#include <utility>

namespace lomaris {

/// Input of an X11 session.
///
/// Keys: a stroke is Copy, Paste or Delete, and cannot be created with any other flags than theirs. The keys for it are
/// those of the window that is to receive them (`applications::EditingKeys`): Control for Command in an ordinary
/// application, other keys or none in a terminal. A stroke cannot be created if the window with the input focus has no
/// keys for it, or if the current keyboard map lacks a key without a modifier. Whoever may use the display may post
/// keys: nobody is asked.
///
/// When a stroke is posted to the session, its receiver is determined again, and once more while no other program can
/// move the focus. Nothing is pressed if other keys are right by then. Whether a terminal has the focus inside of the
/// same window is not determined again. A stroke that is posted to a process uses the keys of its window, and nothing
/// is sent if there are none.
///
/// A key posted to the session carries exactly its modifiers, but for Num Lock. What is held is lifted for the press,
/// what is locked is unlocked and a key of another layout gets that layout, all within one batch that the server either
/// receives whole or not at all. Afterwards the user's own keyboards are asked, and only what they still hold is put
/// back, on them; the user may let a key go in the instant between that answer and the putting back, and would then
/// have to press it once more. Where the server cannot tell keyboards apart, the user presses again what was held.
///
/// A key posted to a process is an event sent to its window with the keyboard focus, else to its newest window: the
/// nearest that there is, as the focus stays where it is. Many programs ignore such events. Modifiers that are held
/// make no difference to it.
///
/// Counters: an X server counts no events, but it knows when the last one came. That moment serves as the counter of
/// every kind: two readings are equal exactly when no input came between them. It also moves with the pointer, and with
/// the keys that are posted to the session, but not with those posted to a process, so that a guard that compares
/// counters may refuse where nothing was typed or clicked, and never the other way round.
class LinuxEvents final : public EventServices {
public:
    /// `connection` and whatever the query uses outlive the services.
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
