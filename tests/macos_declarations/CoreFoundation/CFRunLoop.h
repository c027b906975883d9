#pragma once

#include <CoreFoundation/CoreFoundation.h>

CF_ASSUME_NONNULL_BEGIN
#ifdef __cplusplus
extern "C" {
#endif

// The run loop of the calling thread: running it in one mode for a time.
typedef double CFTimeInterval;
typedef CFStringRef CFRunLoopMode;
typedef SInt32 CFRunLoopRunResult;
enum { kCFRunLoopRunFinished = 1, kCFRunLoopRunStopped = 2, kCFRunLoopRunTimedOut = 3, kCFRunLoopRunHandledSource = 4 };
extern const CFRunLoopMode kCFRunLoopDefaultMode;
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean returnAfterSourceHandled);

#ifdef __cplusplus
}
#endif
CF_ASSUME_NONNULL_END
