#pragma once

#include "platform/event_services.h"
#include "platform/linux/x11_connection.h"
#include "platform/linux/x11_input_clock.h"

namespace lomaris {

/// Input of an X11 session.
///
/// An X server counts no events, but it knows when the last one came. That moment serves as the counter of every kind:
/// two readings are equal exactly when no input came between them. It also moves with the pointer, so that a guard that
/// compares counters may refuse where nothing was typed or clicked, and never the other way round.
class LinuxEvents final : public EventServices {
public:
    /// `connection` outlives the services.
    explicit LinuxEvents(X11Connection& connection) : connection_(connection), inputClock_(connection) {}

    [[nodiscard]] bool preflightPostEventAccess() override;
    [[nodiscard]] bool requestPostEventAccess() override;
    [[nodiscard]] std::unique_ptr<KeyStrokeEvents> createKeyStroke(KeyStroke keyStroke) override;
    void postToSession(const KeyStrokeEvents& events) override;
    void postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) override;
    [[nodiscard]] std::uint32_t inputCounter(InputEventType type) override;

private:
    X11Connection& connection_;
    X11InputClock inputClock_;
};

}  // namespace lomaris
