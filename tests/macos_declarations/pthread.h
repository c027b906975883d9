#pragma once

// The threads of the system that checks, and the one call that only macOS has.

#include_next <pthread.h>

#ifdef __cplusplus
extern "C" {
#endif

// A wait for a time that is counted from now, on a clock that no change of the date moves.
int pthread_cond_timedwait_relative_np(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                       const struct timespec* duration);

#ifdef __cplusplus
}
#endif
