#pragma once

// The system's own header, and one function that exists only on macOS.

#include_next <pthread.h>

#ifdef __cplusplus
extern "C" {
#endif

// A wait with a relative timeout, on a clock that is unaffected by changes of the system time.
int pthread_cond_timedwait_relative_np(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                       const struct timespec* duration);

#ifdef __cplusplus
}
#endif
