#pragma once

#include "platform/accessibility.h"

#include <cstdint>
#include <memory>

namespace lomaris {

/// Types of input events that the session counts; the values are the platform's.
enum class InputEventType : std::uint32_t {
    leftMouseDown = 1,
    rightMouseDown = 3,
    keyDown = 10,
    otherMouseDown = 25,
};

/// Modifier flag of a key event; the value is the platform's.
inline constexpr std::uint64_t commandFlag = 0x100000;

/// One key press: a virtual key code of macOS (8 is C, 9 is V, 51 is Delete) and the exact modifier flags of both the
/// key-down and the key-up event.
struct KeyStroke {
    std::uint16_t keyCode = 0;
    std::uint64_t flags = 0;

    friend bool operator==(const KeyStroke&, const KeyStroke&) = default;
};

/// A key-down and a key-up event, created but not yet posted. Owned by the caller, who may destroy it without posting.
class KeyStrokeEvents {
public:
    KeyStrokeEvents() = default;
    KeyStrokeEvents(const KeyStrokeEvents&) = delete;
    KeyStrokeEvents& operator=(const KeyStrokeEvents&) = delete;
    virtual ~KeyStrokeEvents() = default;
};

/// Synthetic key presses and the session's input counters. Main thread only; never throws.
class EventServices {
public:
    EventServices() = default;
    EventServices(const EventServices&) = delete;
    EventServices& operator=(const EventServices&) = delete;
    virtual ~EventServices() = default;

    /// True if this process may post events; false if that cannot be determined. Shows nothing to the user.
    [[nodiscard]] virtual bool preflightPostEventAccess() = 0;

    /// Requests the permission to post events, which may show the system's prompt. True if it is granted now.
    [[nodiscard]] virtual bool requestPostEventAccess() = 0;

    /// Creates the two events of a key stroke without posting them. Null if the event source or one of the events
    /// cannot be created. The caller owns the result.
    [[nodiscard]] virtual std::unique_ptr<KeyStrokeEvents> createKeyStroke(KeyStroke keyStroke) = 0;

    /// Posts key-down and then key-up to the session, without a pause; the application with the keyboard focus receives
    /// them. Failures are not reported: an ignored key press is visible only in what the target does.
    virtual void postToSession(const KeyStrokeEvents& events) = 0;

    /// Posts like `postToSession`, but to one process, whether or not it is frontmost.
    virtual void postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) = 0;

    /// The number of events of this type that the session has counted; 0 if the platform cannot count. Only the
    /// equality of two readings is meaningful.
    [[nodiscard]] virtual std::uint32_t inputCounter(InputEventType type) = 0;
};

}  // namespace lomaris
