#pragma once

// Declarations of the part of Core Graphics that this project uses; see CoreFoundation/CFBase.h.

#include <CoreFoundation/CoreFoundation.h>

CF_ASSUME_NONNULL_BEGIN
#ifdef __cplusplus
extern "C" {
#endif

// The permission to post events.
bool CGPreflightPostEventAccess(void);
bool CGRequestPostEventAccess(void);

// Event sources and the input state on which they are based.
typedef struct CF_BRIDGED_TYPE(id) __CGEventSource* CGEventSourceRef;
CF_ENUM(int32_t, CGEventSourceStateID){kCGEventSourceStateCombinedSessionState = 0,
                                       kCGEventSourceStateHIDSystemState = 1};
CGEventSourceRef _Nullable CGEventSourceCreate(CGEventSourceStateID state) CF_RETURNS_RETAINED;

// Keyboard events.
typedef struct CF_BRIDGED_TYPE(id) __CGEvent* CGEventRef;
typedef uint16_t CGKeyCode;
CF_OPTIONS(uint64_t, CGEventFlags){kCGEventFlagMaskCommand = 0x00100000};
CGEventRef _Nullable CGEventCreateKeyboardEvent(CGEventSourceRef _Nullable source, CGKeyCode virtualKey,
                                                bool keyDown) CF_RETURNS_RETAINED;
void CGEventSetFlags(CGEventRef _Nullable event, CGEventFlags flags);

// Posting.
CF_ENUM(uint32_t, CGEventTapLocation){kCGSessionEventTap = 1};
void CGEventPost(CGEventTapLocation tap, CGEventRef _Nullable event);
void CGEventPostToPid(pid_t pid, CGEventRef _Nullable event);

// Counters of the input events of a source state.
CF_ENUM(uint32_t, CGEventType){kCGEventLeftMouseDown = 1, kCGEventRightMouseDown = 3, kCGEventKeyDown = 10,
                               kCGEventOtherMouseDown = 25};
uint32_t CGEventSourceCounterForEventType(CGEventSourceStateID state, CGEventType type);

#ifdef __cplusplus
}
#endif
CF_ASSUME_NONNULL_END
