#pragma once

#include "platform/event_services.h"

namespace lomaris::macos {

/// Input events of a macOS session. Key codes are positions on the keyboard: 8 and 9 are C and V on a US keyboard.
/// Counters are those of the whole session and count both the user's input and posted events.
class MacOSEventServices final : public EventServices {
public:
    [[nodiscard]] bool preflightPostEventAccess() override;
    [[nodiscard]] bool requestPostEventAccess() override;
    [[nodiscard]] std::unique_ptr<KeyStrokeEvents> createKeyStroke(KeyStroke keyStroke) override;
    void postToSession(const KeyStrokeEvents& events) override;
    void postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) override;
    [[nodiscard]] std::uint32_t inputCounter(InputEventType type) override;
};

}  // namespace lomaris::macos
