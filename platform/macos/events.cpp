#include "platform/macos/events.h"

#include "platform/macos/core_foundation.h"
#include "platform/macos/shielded_call.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <memory>

namespace lomaris::macos {

// The boundary's flags and event types have the platform's own values.
static_assert(commandFlag == kCGEventFlagMaskCommand);
static_assert(static_cast<std::uint32_t>(InputEventType::leftMouseDown) == kCGEventLeftMouseDown);
static_assert(static_cast<std::uint32_t>(InputEventType::rightMouseDown) == kCGEventRightMouseDown);
static_assert(static_cast<std::uint32_t>(InputEventType::keyDown) == kCGEventKeyDown);
static_assert(static_cast<std::uint32_t>(InputEventType::otherMouseDown) == kCGEventOtherMouseDown);

namespace {

/// Keeps the source as long as its events: releasing it changes the key state that other sources of the same state
/// report.
struct MacOSKeyStrokeEvents final : public KeyStrokeEvents {
    CFOwned<CGEventSourceRef> source;
    CFOwned<CGEventRef> keyDown;
    CFOwned<CGEventRef> keyUp;
};

const MacOSKeyStrokeEvents& ownEvents(const KeyStrokeEvents& events) {
    return static_cast<const MacOSKeyStrokeEvents&>(events);
}

std::unique_ptr<KeyStrokeEvents> makeEvents(KeyStroke keyStroke) {
    auto events = std::make_unique<MacOSKeyStrokeEvents>();
    events->source = CFOwned(CGEventSourceCreate(kCGEventSourceStateHIDSystemState));
    if (!events->source) {
        return nullptr;
    }
    events->keyDown = CFOwned(CGEventCreateKeyboardEvent(events->source.get(), keyStroke.keyCode, true));
    if (!events->keyDown) {
        return nullptr;
    }
    events->keyUp = CFOwned(CGEventCreateKeyboardEvent(events->source.get(), keyStroke.keyCode, false));
    if (!events->keyUp) {
        return nullptr;
    }
    CGEventSetFlags(events->keyDown.get(), static_cast<CGEventFlags>(keyStroke.flags));
    CGEventSetFlags(events->keyUp.get(), static_cast<CGEventFlags>(keyStroke.flags));
    return events;
}

}  // namespace

bool MacOSEventServices::preflightPostEventAccess() {
    return answerOf<bool>([] { return CGPreflightPostEventAccess(); });
}

bool MacOSEventServices::requestPostEventAccess() {
    return answerOf<bool>([] { return CGRequestPostEventAccess(); });
}

std::unique_ptr<KeyStrokeEvents> MacOSEventServices::createKeyStroke(KeyStroke keyStroke) {
    return answerOf<std::unique_ptr<KeyStrokeEvents>>([keyStroke] { return makeEvents(keyStroke); });
}

void MacOSEventServices::postToSession(const KeyStrokeEvents& events) {
    runShielded([&events] {
        CGEventPost(kCGSessionEventTap, ownEvents(events).keyDown.get());
        CGEventPost(kCGSessionEventTap, ownEvents(events).keyUp.get());
    });
}

void MacOSEventServices::postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) {
    runShielded([&events, processIdentifier] {
        CGEventPostToPid(processIdentifier, ownEvents(events).keyDown.get());
        CGEventPostToPid(processIdentifier, ownEvents(events).keyUp.get());
    });
}

std::uint32_t MacOSEventServices::inputCounter(InputEventType type) {
    return answerOf<std::uint32_t>([type] {
        return CGEventSourceCounterForEventType(kCGEventSourceStateCombinedSessionState,
                                                static_cast<CGEventType>(type));
    });
}

}  // namespace lomaris::macos
