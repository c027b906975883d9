#pragma once

#include "platform/event_services.h"
#include "platform/linux/key_poster.h"
#include "platform/linux/x11_connection.h"
#include "platform/linux/x11_input_clock.h"

namespace lomaris {

/// Input of an X11 session.
///
/// Keys: the Command flag is Control here, and a stroke with any other flag cannot be created; neither can one whose
/// key the current keyboard map lacks without a modifier. Whoever may use the display may post keys: nobody is asked.
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
    /// `connection` outlives the services.
    explicit LinuxEvents(X11Connection& connection)
        : connection_(connection), inputClock_(connection), poster_(connection) {}

    [[nodiscard]] bool preflightPostEventAccess() override;
    [[nodiscard]] bool requestPostEventAccess() override;
    [[nodiscard]] std::unique_ptr<KeyStrokeEvents> createKeyStroke(KeyStroke keyStroke) override;
    void postToSession(const KeyStrokeEvents& events) override;
    void postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) override;
    [[nodiscard]] std::uint32_t inputCounter(InputEventType type) override;

private:
    X11Connection& connection_;
    X11InputClock inputClock_;
    KeyPoster poster_;
};

}  // namespace lomaris
