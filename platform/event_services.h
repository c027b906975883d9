#pragma once

#include "platform/accessibility.h"

#include <cstdint>
#include <memory>

namespace lomaris {

/// Kinds of input events that the session counts; the values are the platform's.
enum class InputEventType : std::uint32_t {
    leftMouseDown = 1,
    rightMouseDown = 3,
    keyDown = 10,
    otherMouseDown = 25,
};

/// Bits of the flags of a key event; the values are the platform's.
inline constexpr std::uint64_t commandFlag = 0x100000;

/// One press of a key: the virtual key code of the platform the tool is written for (8 is C, 9 is V, 51 is Delete) and
/// the exact flags that key-down and key-up both carry.
struct KeyStroke {
    std::uint16_t keyCode = 0;
    std::uint64_t flags = 0;

    friend bool operator==(const KeyStroke&, const KeyStroke&) = default;
};

/// A key-down and a key-up event that were created and wait to be posted. Owned by the caller; may be dropped unposted.
class KeyStrokeEvents {
public:
    KeyStrokeEvents() = default;
    KeyStrokeEvents(const KeyStrokeEvents&) = delete;
    KeyStrokeEvents& operator=(const KeyStrokeEvents&) = delete;
    virtual ~KeyStrokeEvents() = default;
};

/// Synthetic key presses and the session's input counters. Called on the main thread; never throws.
class EventServices {
public:
    EventServices() = default;
    EventServices(const EventServices&) = delete;
    EventServices& operator=(const EventServices&) = delete;
    virtual ~EventServices() = default;

    /// Whether this process may post events. Shows nothing to the user. Where it cannot be told, the answer is no.
    [[nodiscard]] virtual bool preflightPostEventAccess() = 0;

    /// Asks for the permission to post events, which may show the system's prompt; answers whether it is granted now.
    [[nodiscard]] virtual bool requestPostEventAccess() = 0;

    /// Creates the two events of a key stroke, or answers null where the event source or either event cannot be
    /// created. Nothing is posted. The caller owns the result.
    [[nodiscard]] virtual std::unique_ptr<KeyStrokeEvents> createKeyStroke(KeyStroke keyStroke) = 0;

    /// Posts key-down, then key-up, without a pause, to the session: whatever has the keyboard receives them. Reports
    /// nothing; a press that is ignored shows only in what the target does.
    virtual void postToSession(const KeyStrokeEvents& events) = 0;

    /// The same, to one process, whether it is in front or not.
    virtual void postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) = 0;

    /// The number of events of one kind that the session has seen. Only equality of two readings means something; 0
    /// where the platform cannot count.
    [[nodiscard]] virtual std::uint32_t inputCounter(InputEventType type) = 0;
};

}  // namespace lomaris
