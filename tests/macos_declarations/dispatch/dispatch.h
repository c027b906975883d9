#pragma once

// Declarations of the part of Dispatch that this project uses; see CoreFoundation/CFBase.h.

#include <stdint.h>

#if !defined(__clang__)
#define _Nonnull
#define _Nullable
#endif

#ifdef __cplusplus
extern "C" {
#endif

// Queues: the main one, and the global ones by quality of service.
#if defined(__OBJC__)
@protocol OS_dispatch_queue;
typedef id<OS_dispatch_queue> dispatch_queue_t;
#else
typedef struct dispatch_queue_s* dispatch_queue_t;
#endif
enum { QOS_CLASS_UTILITY = 0x11 };
dispatch_queue_t _Nonnull dispatch_get_main_queue(void);
dispatch_queue_t _Nonnull dispatch_get_global_queue(intptr_t identifier, uintptr_t flags);

// Submitting a plain function.
typedef void (*dispatch_function_t)(void* _Nullable context);
void dispatch_async_f(dispatch_queue_t _Nonnull queue, void* _Nullable context, dispatch_function_t _Nonnull work);

#ifdef __cplusplus
}
#endif
